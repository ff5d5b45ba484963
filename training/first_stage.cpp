#include "training/first_stage.h"

#include <algorithm>
#include <array>
#include <limits>
#include <stdexcept>
#include <thread>

namespace {

constexpr int kBins = FeatureTable::kBins;
// The two given classifiers answer left or right: four cases with their sums.
constexpr int kCases = 4;

struct Choice {
  std::size_t feature = 0;
  int bin = 0;
  float left = 0;
  float right = 0;
  long long negatives = std::numeric_limits<long long>::max();
};

// Windows of one class by case and bin, then summed up from bin 0.
struct CaseHistogram {
  std::array<std::array<int, kBins>, kCases> count{};

  void add(const std::uint8_t* bins, const std::uint8_t* cases, std::size_t first, std::size_t last) {
    for (std::size_t k = first; k < last; ++k) ++count[cases[k]][bins[k]];
    for (auto& row : count) {
      for (std::size_t b = 1; b < kBins; ++b) row[b] += row[b - 1];
    }
  }

  // Windows that pass when leaves `left` (up to `bin`) and `right` let the marked cases through.
  int passing(int bin, unsigned left, unsigned right) const {
    int sum = 0;
    for (std::size_t c = 0; c < kCases; ++c) {
      const int below = count[c][static_cast<std::size_t>(bin)];
      if (left >> c & 1) sum += below;
      if (right >> c & 1) sum += count[c][kBins - 1] - below;
    }
    return sum;
  }
};

class FirstStage {
 public:
  FirstStage(const std::vector<CandidateFeature>& features, const FeatureTable& table, std::size_t positives,
             const StagePlan& plan, const std::vector<WeakClassifier>& given)
      : features_(features), table_(table), positives_(positives), plan_(plan), cases_(table.windows(), 0) {
    if (given.size() != 2) throw std::invalid_argument("the first stage has two given classifiers");
    for (std::size_t g = 0; g < 2; ++g) markCases(given[g], static_cast<std::uint8_t>(1u << g));
    for (unsigned c = 0; c < kCases; ++c) {
      sums_[c] = ((c & 1) ? given[0].right : given[0].left) + ((c & 2) ? given[1].right : given[1].left);
    }
    chooseLeaves();
  }

  Choice tryFeature(std::size_t feature) const {
    CaseHistogram faces;
    CaseHistogram others;
    faces.add(table_.bins(feature), cases_.data(), 0, positives_);
    others.add(table_.bins(feature), cases_.data(), positives_, table_.windows());
    const auto needed = static_cast<int>(plan_.keep * static_cast<double>(positives_));
    Choice best;
    for (int bin = 0; bin < kBins - 1; ++bin) {
      for (const Leaf& left : leaves_) {
        for (const Leaf& right : leaves_) {
          if (faces.passing(bin, left.passes, right.passes) < needed) continue;
          const long long negatives = others.passing(bin, left.passes, right.passes);
          if (negatives < best.negatives) best = {feature, bin, left.value, right.value, negatives};
        }
      }
    }
    return best;
  }

 private:
  struct Leaf {
    float value;
    unsigned passes;  // bit c: a window of case c passes the stage
  };

  void markCases(const WeakClassifier& weak, std::uint8_t bit) {
    const std::size_t feature = findFeature(features_, weak);
    int bin = 0;
    while (bin < kBins - 1 && table_.thresholdAbove(feature, bin) < weak.threshold) ++bin;
    const std::uint8_t* bins = table_.bins(feature);
    for (std::size_t k = 0; k < cases_.size(); ++k) {
      if (bins[k] > bin) cases_[k] |= bit;
    }
  }

  // One leaf value for every set of cases that a threshold can let through, halfway between the borders.
  void chooseLeaves() {
    std::array<float, kCases> needed;
    for (std::size_t c = 0; c < kCases; ++c) needed[c] = plan_.threshold - sums_[c];
    std::sort(needed.begin(), needed.end());
    std::vector<float> values = {needed.front() - 0.25f, needed.back() + 0.25f};
    for (std::size_t c = 1; c < kCases; ++c) values.push_back(0.5f * (needed[c - 1] + needed[c]));
    for (float value : values) {
      unsigned passes = 0;
      for (unsigned c = 0; c < kCases; ++c) passes |= (sums_[c] + value >= plan_.threshold ? 1u : 0u) << c;
      leaves_.push_back({value, passes});
    }
  }

  const std::vector<CandidateFeature>& features_;
  const FeatureTable& table_;
  std::size_t positives_;
  StagePlan plan_;
  std::vector<std::uint8_t> cases_;  // bit 0 and 1: right of the first and of the second given classifier
  std::array<float, kCases> sums_{};
  std::vector<Leaf> leaves_;
};

}  // namespace

Stage trainFirstStage(const std::vector<CandidateFeature>& features, const FeatureTable& table, std::size_t positives,
                      const StagePlan& plan, const std::vector<WeakClassifier>& given, unsigned threads) {
  const FirstStage search(features, table, positives, plan, given);
  std::vector<Choice> best(threads);
  std::vector<std::thread> workers;
  for (unsigned t = 0; t < threads; ++t) {
    workers.emplace_back([&, t] {
      for (std::size_t f = t; f < features.size(); f += threads) {
        if (features[f].count != 2) continue;
        const Choice choice = search.tryFeature(f);
        if (choice.negatives < best[t].negatives) best[t] = choice;
      }
    });
  }
  for (std::thread& worker : workers) worker.join();
  const Choice choice = *std::min_element(best.begin(), best.end(), [](const Choice& a, const Choice& b) {
    return a.negatives != b.negatives ? a.negatives < b.negatives : a.feature < b.feature;
  });
  const CandidateFeature& feature = features[choice.feature];
  Stage stage{plan.threshold, given};
  stage.classifiers.push_back({{feature.rects, feature.rects + feature.count},
                               table.thresholdAbove(choice.feature, choice.bin),
                               choice.left,
                               choice.right});
  return stage;
}
