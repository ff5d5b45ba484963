// The genetic search for shape and pose of a face.
#pragma once

#include <memory>
#include <vector>

#include "features/TNeuroChromosome.h"

class TNeuroLocator;

class TGenetic {
 public:
  std::vector<TNeuroChromosome*> Population;
  int Generation = 0;      // finished generations
  TNeuroLocator* Locator;  // not owned

  TGenetic(int populationSize, TNeuroLocator* locator);
  TGenetic(const TGenetic&) = delete;
  TGenetic& operator=(const TGenetic&) = delete;
  virtual ~TGenetic() = default;

  void GenerateInitialPopulation(int populationSize);
  // Eleven generations, or fewer with NeedInterrupt; the locator's Result holds the best grid after each. The best
  // members breed in all ordered pairs, and the best of parents and children survive. `tolerance` has no effect.
  void Solve(float tolerance);
  // By descending Value, from `left` to `right`, both included. The order of equal members is a fixed one that
  // results rest on.
  void SortPopulation(std::vector<TNeuroChromosome*>* population, int left, int right);

 private:
  using Members = std::vector<TNeuroChromosome*>;

  void AddMembers(Members& members, std::size_t count);
  void Evaluate(const Members& members);
  void Breed(const Members& children);
  void KeepBest(Members& children);

  // Members live in blocks, so that a search allocates a few times only. They move between the population and the
  // children of Solve.
  std::vector<std::unique_ptr<TNeuroChromosome[]>> blocks_;
};
