#include "training/features/grid_trainer.h"

#include <algorithm>
#include <cmath>
#include <span>

#include "features/shape_tables.h"
#include "training/evaluation/parallel.h"
#include "training/evaluation/point_errors.h"

namespace {

constexpr std::size_t kLanes = 4;
constexpr std::size_t kPoints = kNodes;
// Below this a candidate's slope changes nothing that counts, and most candidates are below.
constexpr double kNegligible = 2e-3;

std::vector<double> errorWeights(const GridTrainerOptions& options) {
  std::vector<double> weights(kPoints, options.foreheadWeight);
  for (const std::size_t n : evaluation::kOutlineNodes) weights[n] = options.outlineWeight;
  for (const std::size_t n : evaluation::kInnerNodes) weights[n] = 1;
  for (const std::size_t n : evaluation::kPupils) weights[n] = options.pupilWeight;
  double sum = 0;
  for (const double weight : weights) sum += weight;
  for (double& weight : weights) weight *= 100 / sum;
  return weights;
}

// Makes scores the odds of a softmax over them; returns the error to be expected of the choice.
double chooseSoftly(std::span<double> scores, std::span<const double> errors, double sharpness) {
  const double largest = *std::max_element(scores.begin(), scores.end());
  double total = 0, risk = 0;
  for (double& score : scores) total += score = std::exp(sharpness * (score - largest));
  for (std::size_t i = 0; i < scores.size(); ++i) risk += (scores[i] /= total) * errors[i];
  return risk;
}

int toPixel(float value) { return static_cast<int>(std::clamp(value, 0.0f, kFrameSide - 1.0f)); }

}  // namespace

// The candidates of a frame and what the networks answer there.
struct GridTrainer::Choice {
  struct Answer {
    int x, y;
    float value;
    float hidden[kHiddenNeurons];
  };

  std::vector<SearchGrid> grids;
  std::vector<Answer> answers;  // of the grids in turn, forty each
  std::vector<double> errors;
  std::vector<double> sums;
};

GridTrainer::GridTrainer(const TrainingSet& set, const GridCandidates& candidates, const TrainerOptions& single,
                         const GridTrainerOptions& options, std::size_t steps, std::vector<NodeNetwork>& networks)
    : set_(set),
      candidates_(candidates),
      single_(single),
      options_(options),
      networks_(networks),
      weights_(errorWeights(options)),
      adam_(networks.size()),
      lanes_(kLanes),
      steps_(steps) {
  for (std::size_t i = 0; i < kLanes; ++i) {
    lanes_[i].random.seed(single.seed * 77u + static_cast<unsigned>(i));
    lanes_[i].gradients.resize(networks.size());
  }
}

GridLosses GridTrainer::train(const std::vector<std::size_t>& places) {
  for (Lane& lane : lanes_) lane.losses = {};
  const std::size_t batches = places.size() / options_.batch;
  for (std::size_t b = 0; b < batches; ++b) {
    evaluation::forEachIndex(kLanes, single_.threads, [&](std::size_t l) {
      for (std::size_t i = l; i < options_.batch; i += kLanes) addFrame(lanes_[l], places[b * options_.batch + i]);
    });
    evaluation::forEachIndex(networks_.size(), single_.threads, [&](std::size_t n) { step(n); });
    ++done_;
  }
  GridLosses losses;
  const auto frames = static_cast<double>(std::max<std::size_t>(1, batches * options_.batch));
  for (const Lane& lane : lanes_) {
    losses.risk += lane.losses.risk / frames;
    losses.steps += lane.losses.steps / frames;
    losses.squares += lane.losses.squares / (frames * static_cast<double>(networks_.size()) * options_.squares);
  }
  return losses;
}

void GridTrainer::step(std::size_t node) {
  NodeNetwork& sum = lanes_[0].gradients[node];
  for (std::size_t l = 1; l < kLanes; ++l) {
    for (std::size_t i = 0; i < NodeNetwork::kParameters; ++i) {
      sum.parameters()[i] += lanes_[l].gradients[node].parameters()[i];
    }
  }
  const double rate = rateAt(options_.rate, options_.warmUp, static_cast<double>(done_) / static_cast<double>(steps_));
  adam_[node].step(networks_[node], sum, 1.0f / static_cast<float>(options_.batch), rate, options_.decay);
  for (Lane& lane : lanes_) lane.gradients[node] = NodeNetwork{};
}

void GridTrainer::addFrame(Lane& lane, std::size_t place) const {
  const PatchFrame& frame = set_.frames[place];
  SearchGrid truth;
  for (std::size_t k = 0; k < truth.size(); ++k) truth[k] = frame.points[k] + static_cast<float>(set_.shifts[k]);
  thread_local Choice choice;
  candidates_.draw(truth, set_.grids[place], lane.random, choice.grids);
  addChoice(lane, frame, truth, choice);
  addSquares(lane, frame, truth);
  addSteps(lane, frame, truth, set_.grids[place]);
}

// With the odds p of the candidates and their errors e the risk is r = sum p e, and its derivative by a candidate's sum
// is sharpness * p * (e - r). A sum falls by what its nodes' networks answer more.
void GridTrainer::addChoice(Lane& lane, const PatchFrame& frame, const SearchGrid& truth, Choice& choice) const {
  const std::size_t count = choice.grids.size();
  const double distance = static_cast<double>(std::hypot(truth[2] - truth[0], truth[3] - truth[1]));
  const bool even = std::uniform_real_distribution<double>()(lane.random) < options_.evenShare;
  choice.answers.resize(count * kPoints);
  choice.errors.assign(count, 0);
  choice.sums.assign(count, 0);
  alignas(64) float inputs[kPatchPixels];
  // One node after the other: its network then stays in the cache.
  for (std::size_t n = 0; n < kPoints; ++n) {
    for (std::size_t i = 0; i < count; ++i) {
      const float x = choice.grids[i][2 * n], y = choice.grids[i][2 * n + 1];
      choice.errors[i] +=
          weights_[n] * static_cast<double>(std::hypot(x - truth[2 * n], y - truth[2 * n + 1])) / distance;
      Choice::Answer& answer = choice.answers[i * kPoints + n];
      answer.x = even ? toPixel(x) & ~1 : toPixel(x);
      answer.y = even ? toPixel(y) & ~1 : toPixel(y);
      frame.read(answer.x, answer.y, inputs);
      answer.value = evaluateNetwork(networks_[n], inputs, answer.hidden);
      choice.sums[i] -= static_cast<double>(answer.value);
    }
  }
  const double risk = chooseSoftly(choice.sums, choice.errors, options_.sharpness);
  const std::vector<double>& odds = choice.sums;
  lane.losses.risk += risk;
  for (std::size_t n = 0; n < kPoints; ++n) {
    for (std::size_t i = 0; i < count; ++i) {
      const double slope = -options_.sharpness * odds[i] * (choice.errors[i] - risk);
      if (std::abs(slope) < kNegligible) continue;
      const Choice::Answer& answer = choice.answers[i * kPoints + n];
      frame.read(answer.x, answer.y, inputs);
      addGradient(networks_[n], inputs, answer.hidden, answer.value, static_cast<float>(slope), lane.gradients[n]);
    }
  }
}

void GridTrainer::addSquares(Lane& lane, const PatchFrame& frame, const SearchGrid& truth) const {
  for (std::size_t n = 0; n < kPoints; ++n) {
    const TrainedPlace node = {static_cast<double>(truth[2 * n]), static_cast<double>(truth[2 * n + 1])};
    for (int k = 0; k < options_.squares; ++k) {
      lane.losses.squares += addPatch(frame, node, drawTrainedPlace(single_, node, lane.random), single_.targets.of(n),
                                      options_.squaresWeight, networks_[n], lane.gradients[n]);
    }
  }
}

// The search ends with a step of each node by itself to the best of nine places. `searched` are two grids a search, the
// one at which these steps began first. Here the step is chosen with the odds of a softmax, as the grids are.
void GridTrainer::addSteps(Lane& lane, const PatchFrame& frame, const SearchGrid& truth,
                           const std::vector<SearchGrid>& searched) const {
  if (searched.empty()) return;
  const SearchGrid& start = searched[lane.random() % ((searched.size() + 1) / 2) * 2];
  const double distance = static_cast<double>(std::hypot(truth[2] - truth[0], truth[3] - truth[1]));
  constexpr int kSteps = 9;
  alignas(64) float inputs[kSteps][kPatchPixels];
  float hidden[kSteps][kHiddenNeurons], values[kSteps];
  double errors[kSteps], odds[kSteps];
  for (std::size_t n = 0; n < kPoints; ++n) {
    for (int i = 0; i < kSteps; ++i) {
      const float x = start[2 * n] + static_cast<float>(i / 3 - 1),
                  y = start[2 * n + 1] + static_cast<float>(i % 3 - 1);
      frame.read(toPixel(x), toPixel(y), inputs[i]);
      values[i] = evaluateNetwork(networks_[n], inputs[i], hidden[i]);
      errors[i] = weights_[n] * static_cast<double>(std::hypot(x - truth[2 * n], y - truth[2 * n + 1])) / distance;
    }
    const float least = *std::min_element(values, values + kSteps);
    for (int i = 0; i < kSteps; ++i) odds[i] = static_cast<double>(least - values[i]);
    const double risk = chooseSoftly(odds, errors, options_.stepSharpness);
    lane.losses.steps += risk;
    for (int i = 0; i < kSteps; ++i) {
      const double slope = -options_.stepWeight * options_.stepSharpness * odds[i] * (errors[i] - risk);
      addGradient(networks_[n], inputs[i], hidden[i], values[i], static_cast<float>(slope), lane.gradients[n]);
    }
  }
}
