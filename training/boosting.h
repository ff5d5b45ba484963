// Gentle AdaBoost with regression stumps (Friedman, Hastie, Tibshirani, "Additive Logistic Regression", 2000):
// each round fits the stump with the least weighted squared error to the labels +1 and -1.
#pragma once

#include <cstdint>
#include <random>
#include <vector>

#include "training/cascade_stream.h"
#include "training/feature_table.h"

struct StagePlan {
  int classifiers;
  int threeRectangle;  // how many of them use three rectangles
  float threshold;     // the stage threshold to be written; leaf values are shifted to meet it
  double keep;         // share of the positives that the stage must pass
};

// The place of a classifier's feature in the pool; throws std::invalid_argument when it is not there.
std::size_t findFeature(const std::vector<CandidateFeature>& features, const WeakClassifier& weak);

class Booster {
 public:
  // The first `positives` windows of the table are faces, the others are not.
  Booster(const std::vector<CandidateFeature>& features, const FeatureTable& table, std::size_t positives,
          std::size_t candidates, std::uint32_t seed, unsigned threads);

  Stage train(const StagePlan& plan);

 private:
  struct Stump {
    std::size_t feature = 0;
    int bin = 0;
    float left = 0;  // response in -1 to 1
    float right = 0;
    double gain = -1;
  };

  Stump bestStump(bool threeRectangles);
  Stump evaluateFeature(std::size_t feature) const;
  void quantiseWeights();
  void apply(const Stump& stump);
  WeakClassifier classifierOf(const Stump& stump) const;
  void update(std::size_t window, float response);

  const std::vector<CandidateFeature>& features_;
  const FeatureTable& table_;
  std::size_t positives_;
  std::size_t candidates_;
  unsigned threads_;
  std::mt19937 random_;
  std::vector<std::size_t> twoRectangles_;
  std::vector<std::size_t> threeRectangles_;
  std::vector<double> weights_;
  std::vector<double> sums_;              // of leaf values (response + 1) / 2
  std::vector<std::uint32_t> quantised_;  // weights of this round, 2^30 in all per class at most
  std::vector<std::uint32_t> active_;     // windows that matter this round, positives first
  std::size_t activePositives_ = 0;
};
