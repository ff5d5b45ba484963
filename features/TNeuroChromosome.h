// One member of the search's population: shape and pose of a face, and its fitness.
#pragma once

#include <array>

#include "features/shape_tables.h"

class TGenetic;

class TNeuroChromosome {
 public:
  float Value = 0.0F;  // the fitness, higher is better
  std::array<float, kShapeParameters> Parameters{};
  TGenetic* Owner = nullptr;  // not owned
  int EigenCount = kDeformations;

  TNeuroChromosome() = default;
  explicit TNeuroChromosome(TGenetic* owner) : Owner(owner) {}
  virtual ~TNeuroChromosome() = default;

  void Randomize();
  // Indices above 36 do nothing.
  void RandomizeParameter(int index);
  // Draws one parameter anew; the rotation only if rand gives its largest number.
  void Mutate();
  // Moves to a random place on the line to `other`.
  void Crossingover(TNeuroChromosome* other);
  void Copy(TNeuroChromosome* source);
  void CalcValue();
};
