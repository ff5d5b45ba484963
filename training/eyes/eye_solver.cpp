#include "training/eyes/eye_solver.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>

#include "eyes/eye_score.h"

namespace {

constexpr int kSide = EyeSample::kSide;
constexpr int kFirst = kFirstScoredColumn + 1;  // columns that are compared
constexpr int kLast = kLastScoredColumn - 1;

std::size_t placeOf(int x, int y) { return static_cast<std::size_t>(x + kSide * y); }

// Calls work(place) for all places that are compared.
template <class Work>
void forCompared(Work work) {
  for (int y = 0; y < kSide; ++y) {
    for (int x = kFirst; x <= kLast; ++x) work(placeOf(x, y));
  }
}

// How good each place is, 1 at the true one. Half a pixel below the pupil, which cancels the truncation of the result;
// sideways it cannot be cancelled, since the mirrored eye is truncated the other way.
void fillWanted(const EyeSample& sample, const SolverOptions& options, std::vector<double>& wanted) {
  forCompared([&](std::size_t at) {
    const double dx = static_cast<double>(at % kSide) - sample.x, dy = static_cast<double>(at / kSide) - sample.y - 0.5;
    const double squares = (dx * dx + dy * dy) / (2 * options.width * options.width);
    wanted[at] = std::exp(-squares) + options.tail * std::exp(-squares / 9) + 1e-30;
  });
}

}  // namespace

EyeSolver::EyeSolver(const SolverOptions& options)
    : options_(options),
      gradient_(EyeWeights::kCount),
      mean_(EyeWeights::kCount),
      square_(EyeWeights::kCount),
      random_(options.seed) {
  for (std::size_t i = 0; i < EyeWeights::kCount; ++i) fixed_.push_back(EyeWeights::isFixed(i));
}

double EyeSolver::addSample(const EyeSample& sample) {
  float scores[kSide * kSide] = {};
  scoreSample(weights_, sample, scores);
  std::vector<double> wanted(kSide * kSide), chance(kSide * kSide);
  fillWanted(sample, options_, wanted);
  const auto compared = [&](std::size_t at) {
    return static_cast<double>(scores[at - 1] + scores[at] + scores[at + 1]);
  };
  double lowest = 1e300, sum = 0, good = 0;
  forCompared([&](std::size_t at) { lowest = std::min(lowest, compared(at)); });
  forCompared([&](std::size_t at) {
    sum += chance[at] = std::exp(lowest - compared(at));
    if (!options_.fixedShares) wanted[at] *= chance[at];
    good += wanted[at];
  });

  float slopes[kSide * kSide] = {};
  forCompared([&](std::size_t at) {
    const auto slope = static_cast<float>(wanted[at] / good - chance[at] / sum);
    for (std::size_t neighbour = at - 1; neighbour <= at + 1; ++neighbour) slopes[neighbour] += slope;
  });
  constexpr float kNegligible = 1e-4f;
  addGradient(sample, slopes, kNegligible, gradient_);
  if (!options_.fixedShares) return std::log(sum / good);
  double loss = std::log(sum);
  forCompared([&](std::size_t at) { loss += wanted[at] / good * (compared(at) - lowest); });
  return loss;
}

void EyeSolver::step(std::size_t samples, double progress) {
  constexpr double kMeanKept = 0.9, kSquareKept = 0.999;
  ++steps_;
  const double rate = options_.rate * (0.5 + 0.5 * std::cos(std::numbers::pi * progress));
  const double meanScale = 1 / (1 - std::pow(kMeanKept, steps_)), squareScale = 1 / (1 - std::pow(kSquareKept, steps_));
  const auto share = static_cast<float>(1.0 / static_cast<double>(samples));
  const auto length = static_cast<float>(rate * meanScale), kept = static_cast<float>(1 - rate * options_.decay);
  for (std::size_t i = 0; i < EyeWeights::kCount; ++i) {
    const float g = gradient_[i] * share;
    mean_[i] = 0.9f * mean_[i] + 0.1f * g;
    square_[i] = 0.999f * square_[i] + 0.001f * g * g;
    const float root = std::sqrt(square_[i] * static_cast<float>(squareScale)) + 1e-8f;
    weights_.values[i] = fixed_[i] ? 0 : weights_.values[i] * kept - length * mean_[i] / root;
    gradient_[i] = 0;
  }
}

double EyeSolver::runEpoch(const std::vector<EyeSample>& samples) {
  std::vector<std::size_t> order(samples.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::shuffle(order.begin(), order.end(), random_);
  double loss = 0;
  for (std::size_t i = 0; i < order.size(); i += options_.batch) {
    const std::size_t end = std::min(i + options_.batch, order.size());
    for (std::size_t k = i; k < end; ++k) loss += addSample(samples[order[k]]);
    const double done = epochsDone_ + static_cast<double>(i) / static_cast<double>(order.size());
    step(end - i, done / options_.epochs);
  }
  ++epochsDone_;
  return loss / static_cast<double>(samples.size());
}
