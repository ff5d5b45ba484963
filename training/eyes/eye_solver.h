// Training of the weights by the rank of the true place.
#pragma once

#include <cstddef>
#include <random>
#include <vector>

#include "training/eyes/eye_weights.h"

struct SolverOptions {
  int epochs = 12;
  std::size_t batch = 16;    // windows a step
  double rate = 0.003;       // length of the first steps; falls to 0 along half a cosine
  double decay = 0.01;       // pull of the weights towards 0, relative to the rate
  double width = 1.0;        // s.d. of how good a place is, pixels
  double tail = 0;           // of how good a place is, this share falls three times as slowly: near misses
  bool fixedShares = false;  // each place shall win as often as it is good, instead of any good one winning
  unsigned seed = 1;
};

// The chance of each place of a window to be the one found is made exp(-t) over its sum, with t the sum of three
// neighbouring scores that the search compares. How good a place is falls with its distance from the true one like a
// Gaussian, and minimised is the negative logarithm of the expected good: all places of a window compete with each
// other, the hardest ones count most, and which of several good places wins does not matter. With fixedShares it is the
// cross entropy to the goods, scaled to a sum of 1: less exact, but fewer far misses. Steps are Adam's (Kingma and Ba
// 2015) with decoupled decay.
class EyeSolver {
 public:
  explicit EyeSolver(const SolverOptions& options);

  // One pass over the samples in random order. Returns the mean loss.
  double runEpoch(const std::vector<EyeSample>& samples);
  const EyeWeights& weights() const { return weights_; }

 private:
  // Adds the sample's gradient and returns its loss.
  double addSample(const EyeSample& sample);
  void step(std::size_t samples, double progress);

  SolverOptions options_;
  EyeWeights weights_;
  std::vector<float> gradient_;
  std::vector<float> mean_;
  std::vector<float> square_;
  std::vector<char> fixed_;
  std::mt19937 random_;
  int steps_ = 0;
  int epochsDone_ = 0;
};
