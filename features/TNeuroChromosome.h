// One member of the search's population: shape and pose of a face, and its fitness.
#pragma once

#include <vector>

class TGenetic;

class TNeuroChromosome {
 public:
  float Value = 0.0F;  // the fitness, higher is better
  // 32 shape parameters; then shift in x and y (pixels), scale in x and y, rotation (radians).
  std::vector<float> Parameters;
  TGenetic* Owner;  // not owned
  int EigenCount;

  explicit TNeuroChromosome(TGenetic* owner);
  TNeuroChromosome(const TNeuroChromosome&) = delete;
  TNeuroChromosome& operator=(const TNeuroChromosome&) = delete;
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
