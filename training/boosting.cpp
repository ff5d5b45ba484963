#include "training/boosting.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <stdexcept>
#include <thread>

namespace {

constexpr double kWeightTotal = 1 << 30;
// Windows that together carry less than this share of the weight are left out of a round.
constexpr double kTrimmedShare = 0.01;

// Adds the weights of windows into four histograms in turn: neighbours often share a bin, and one histogram
// would wait for its own last store.
void fillHistogram(const std::uint8_t* bins, const std::uint32_t* index, const std::uint32_t* weight, std::size_t count,
                   std::uint32_t* histogram) {
  std::uint32_t part[4][FeatureTable::kBins] = {};
  std::size_t k = 0;
  for (; k + 4 <= count; k += 4) {
    part[0][bins[index[k]]] += weight[k];
    part[1][bins[index[k + 1]]] += weight[k + 1];
    part[2][bins[index[k + 2]]] += weight[k + 2];
    part[3][bins[index[k + 3]]] += weight[k + 3];
  }
  for (; k < count; ++k) part[0][bins[index[k]]] += weight[k];
  for (int b = 0; b < FeatureTable::kBins; ++b) histogram[b] = part[0][b] + part[1][b] + part[2][b] + part[3][b];
}

// Squared error taken away by a leaf that holds these weights.
double leafGain(double positive, double negative) {
  const double sum = positive + negative;
  const double difference = positive - negative;
  return sum > 0 ? difference * difference / sum : 0.0;
}

float leafResponse(double positive, double negative) {
  const double sum = positive + negative;
  return sum > 0 ? static_cast<float>((positive - negative) / sum) : 0.0f;
}

}  // namespace

std::size_t findFeature(const std::vector<CandidateFeature>& features, const WeakClassifier& weak) {
  const auto sameRect = [](const HaarRect& a, const HaarRect& b) {
    return a.x == b.x && a.y == b.y && a.width == b.width && a.height == b.height && a.weight == b.weight;
  };
  const auto same = [&](const CandidateFeature& feature) {
    return std::equal(feature.rects, feature.rects + feature.count, weak.rects.begin(), weak.rects.end(), sameRect);
  };
  const auto found = std::find_if(features.begin(), features.end(), same);
  if (found == features.end()) throw std::invalid_argument("the classifier is not made of a feature of the pool");
  return static_cast<std::size_t>(found - features.begin());
}

Booster::Booster(const std::vector<CandidateFeature>& features, const FeatureTable& table, std::size_t positives,
                 std::size_t candidates, std::uint32_t seed, unsigned threads)
    : features_(features),
      table_(table),
      positives_(positives),
      candidates_(candidates),
      threads_(threads),
      random_(seed),
      weights_(table.windows()),
      sums_(table.windows(), 0.0) {
  for (std::size_t f = 0; f < features.size(); ++f) {
    (features[f].count == 2 ? twoRectangles_ : threeRectangles_).push_back(f);
  }
  const std::size_t negatives = table.windows() - positives;
  for (std::size_t k = 0; k < weights_.size(); ++k) {
    weights_[k] = 0.5 / static_cast<double>(k < positives ? positives : negatives);
  }
}

void Booster::update(std::size_t window, float response) {
  weights_[window] *= std::exp(window < positives_ ? -response : response);
  sums_[window] += 0.5 * (response + 1.0);
}

void Booster::quantiseWeights() {
  // Each class is brought to its share of the whole, then the lightest windows are dropped.
  const double total = std::accumulate(weights_.begin(), weights_.end(), 0.0);
  std::vector<double> sorted(weights_);
  std::sort(sorted.begin(), sorted.end());
  double limit = 0;
  double dropped = 0;
  for (double weight : sorted) {
    dropped += weight;
    limit = weight;
    if (dropped > kTrimmedShare * total) break;
  }
  active_.clear();
  quantised_.clear();
  for (std::size_t k = 0; k < weights_.size(); ++k) {
    if (k == positives_) activePositives_ = active_.size();
    if (weights_[k] < limit) continue;
    active_.push_back(static_cast<std::uint32_t>(k));
    quantised_.push_back(static_cast<std::uint32_t>(weights_[k] / total * kWeightTotal));
  }
  for (double& weight : weights_) weight /= total;
}

Booster::Stump Booster::evaluateFeature(std::size_t feature) const {
  std::uint32_t positive[FeatureTable::kBins];
  std::uint32_t negative[FeatureTable::kBins];
  const std::uint8_t* bins = table_.bins(feature);
  fillHistogram(bins, active_.data(), quantised_.data(), activePositives_, positive);
  fillHistogram(bins, active_.data() + activePositives_, quantised_.data() + activePositives_,
                active_.size() - activePositives_, negative);
  double allPositive = 0;
  double allNegative = 0;
  for (int b = 0; b < FeatureTable::kBins; ++b) {
    allPositive += positive[b];
    allNegative += negative[b];
  }
  Stump best;
  best.feature = feature;
  double leftPositive = 0;
  double leftNegative = 0;
  for (int b = 0; b < FeatureTable::kBins - 1; ++b) {
    leftPositive += positive[b];
    leftNegative += negative[b];
    const double gain =
        leafGain(leftPositive, leftNegative) + leafGain(allPositive - leftPositive, allNegative - leftNegative);
    if (gain > best.gain) {
      best.gain = gain;
      best.bin = b;
      best.left = leafResponse(leftPositive, leftNegative);
      best.right = leafResponse(allPositive - leftPositive, allNegative - leftNegative);
    }
  }
  return best;
}

Booster::Stump Booster::bestStump(bool threeRectangles) {
  quantiseWeights();
  const std::vector<std::size_t>& pool = threeRectangles ? threeRectangles_ : twoRectangles_;
  std::vector<std::size_t> drawn;
  std::sample(pool.begin(), pool.end(), std::back_inserter(drawn), candidates_, random_);
  std::vector<Stump> best(threads_);
  std::vector<std::thread> workers;
  for (unsigned t = 0; t < threads_; ++t) {
    workers.emplace_back([&, t] {
      for (std::size_t k = t; k < drawn.size(); k += threads_) {
        const Stump stump = evaluateFeature(drawn[k]);
        if (stump.gain > best[t].gain) best[t] = stump;
      }
    });
  }
  for (std::thread& worker : workers) worker.join();
  return *std::max_element(best.begin(), best.end(), [](const Stump& a, const Stump& b) {
    return a.gain != b.gain ? a.gain < b.gain : a.feature > b.feature;
  });
}

void Booster::apply(const Stump& stump) {
  const std::uint8_t* bins = table_.bins(stump.feature);
  for (std::size_t k = 0; k < weights_.size(); ++k) update(k, bins[k] <= stump.bin ? stump.left : stump.right);
}

WeakClassifier Booster::classifierOf(const Stump& stump) const {
  const CandidateFeature& feature = features_[stump.feature];
  WeakClassifier weak;
  weak.rects.assign(feature.rects, feature.rects + feature.count);
  weak.threshold = table_.thresholdAbove(stump.feature, stump.bin);
  weak.left = 0.5f * (stump.left + 1.0f);
  weak.right = 0.5f * (stump.right + 1.0f);
  return weak;
}

Stage Booster::train(const StagePlan& plan) {
  Stage stage;
  stage.threshold = plan.threshold;
  // The three-rectangle classifiers are spread evenly over the rounds.
  const int rounds = plan.classifiers;
  for (int round = 0; round < rounds; ++round) {
    const bool three = (round + 1) * plan.threeRectangle / rounds > round * plan.threeRectangle / rounds;
    const Stump stump = bestStump(three);
    apply(stump);
    stage.classifiers.push_back(classifierOf(stump));
  }

  std::vector<double> positiveSums(sums_.begin(), sums_.begin() + static_cast<std::ptrdiff_t>(positives_));
  const auto lost = static_cast<std::ptrdiff_t>((1.0 - plan.keep) * static_cast<double>(positives_));
  std::nth_element(positiveSums.begin(), positiveSums.begin() + lost, positiveSums.end());
  const double trained = positiveSums[static_cast<std::size_t>(lost)] - 1e-4;

  // Every leaf is moved by the same amount, so that the trained threshold becomes the listed one.
  const float shift = static_cast<float>((plan.threshold - trained) / rounds);
  for (WeakClassifier& weak : stage.classifiers) {
    weak.left += shift;
    weak.right += shift;
  }
  return stage;
}
