// The genetic search for shape and pose of a face.
#pragma once

#include <vector>

#include "features/TNeuroChromosome.h"

class TNeuroLocator;

class TGenetic {
 public:
  std::vector<TNeuroChromosome*> Population;  // owned
  int Generation = 0;                         // finished generations
  TNeuroLocator* Locator;                     // not owned

  TGenetic(int populationSize, TNeuroLocator* locator);
  TGenetic(const TGenetic&) = delete;
  TGenetic& operator=(const TGenetic&) = delete;
  virtual ~TGenetic();

  void GenerateInitialPopulation(int populationSize);
  // Eleven generations, or fewer with NeedInterrupt; the locator's Result holds the best grid after each. The best
  // members breed in all ordered pairs, and the best of parents and children survive. `tolerance` has no effect.
  void Solve(float tolerance);
  // By descending Value, from `left` to `right`, both included. The order of equal members is a fixed one that
  // results rest on.
  void SortPopulation(std::vector<TNeuroChromosome*>* population, int left, int right);
};
