#include "training/features/node_trainer.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>

#include "training/evaluation/parallel.h"

namespace {

constexpr std::size_t kBatch = 256;
constexpr double kLeastRate = 1e-6;

// Without the warm-up a fresh network's first steps would saturate it.
double rateAt(const TrainerOptions& options, double done) {
  if (done < options.warmUp) return options.rate * done / options.warmUp + kLeastRate;
  return options.rate * 0.5 * (1 + std::cos(std::numbers::pi * done)) + kLeastRate;
}

class NodeTraining {
 public:
  NodeTraining(const TrainingSet& set, const TrainerOptions& options, std::size_t node, NodeNetwork& network)
      : set_(set),
        options_(options),
        node_(node),
        bells_(options.targets.of(node)),
        network_(network),
        random_(options.seed * 1009u + static_cast<unsigned>(node)) {}

  double run() {
    std::vector<std::size_t> order(set_.frames.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    const auto offsets = static_cast<std::size_t>(options_.offsets);
    total_ = std::max<std::size_t>(1, order.size() * offsets * static_cast<std::size_t>(options_.epochs) / kBatch);
    double loss = 0;
    for (int epoch = 0; epoch < options_.epochs; ++epoch) {
      std::shuffle(order.begin(), order.end(), random_);
      loss = 0;
      // All patches of a frame one after another: its pixels are then still in the cache.
      for (const std::size_t frame : order) {
        for (std::size_t k = 0; k < offsets; ++k) loss += addSample(frame);
      }
    }
    return loss / static_cast<double>(std::max<std::size_t>(1, order.size() * offsets));
  }

 private:
  struct Place {
    double x, y;
  };

  float uniform() { return std::uniform_real_distribution<float>()(random_); }
  float normal() { return normal_(random_); }

  Place drawPlace(std::size_t frame, const Place& truth) {
    if (!set_.grids.empty() && !set_.grids[frame].empty() && uniform() < options_.minedShare) return minedPlace(frame);
    const float u = uniform();
    if (u < options_.nearShare) return {truth.x + options_.near * normal(), truth.y + options_.near * normal()};
    const double reach = u < options_.nearShare + options_.middleShare ? options_.middle : options_.far;
    return {truth.x + reach * (2 * uniform() - 1), truth.y + reach * (2 * uniform() - 1)};
  }

  Place minedPlace(std::size_t frame) {
    const auto& grids = set_.grids[frame];
    const SearchGrid& grid = grids[std::uniform_int_distribution<std::size_t>(0, grids.size() - 1)(random_)];
    return {grid[2 * node_] + options_.minedNear * normal(), grid[2 * node_ + 1] + options_.minedNear * normal()};
  }

  double addSample(std::size_t index) {
    const PatchFrame& frame = set_.frames[index];
    const Place truth = {frame.points[2 * node_] + set_.shifts[2 * node_],
                         frame.points[2 * node_ + 1] + set_.shifts[2 * node_ + 1]};
    const Place place = drawPlace(index, truth);
    const int x = static_cast<int>(std::floor(std::clamp(place.x, 0.0, kFrameSide - 1.0)));
    const int y = static_cast<int>(std::floor(std::clamp(place.y, 0.0, kFrameSide - 1.0)));
    // The search reads this patch for all places in the pixel; it stands for the pixel's middle.
    const double dx = x + 0.5 - truth.x, dy = y + 0.5 - truth.y;
    frame.read(x, y, inputs_);
    const double loss = addGradient(network_, inputs_, targetAt(bells_, dx * dx + dy * dy), gradient_);
    if (++inBatch_ == kBatch) step();
    return loss;
  }

  void step() {
    const double done = static_cast<double>(steps_++) / static_cast<double>(total_);
    adam_.step(network_, gradient_, 1.0f / kBatch, rateAt(options_, std::min(1.0, done)), options_.decay);
    gradient_ = NodeNetwork{};
    inBatch_ = 0;
  }

  const TrainingSet& set_;
  const TrainerOptions& options_;
  std::size_t node_;
  const TargetBells& bells_;
  NodeNetwork& network_;
  std::mt19937 random_;
  std::normal_distribution<float> normal_;
  AdamSteps adam_;
  NodeNetwork gradient_;
  alignas(64) float inputs_[kPatchPixels] = {};
  std::size_t inBatch_ = 0, steps_ = 0, total_ = 0;
};

}  // namespace

std::vector<double> trainNodes(const TrainingSet& set, const TrainerOptions& options,
                               std::vector<NodeNetwork>& networks) {
  std::vector<double> losses(networks.size());
  evaluation::forEachIndex(networks.size(), options.threads,
                           [&](std::size_t n) { losses[n] = NodeTraining(set, options, n, networks[n]).run(); });
  return losses;
}

std::vector<NodeNetwork> randomNetworks(unsigned seed) {
  std::vector<NodeNetwork> networks;
  for (unsigned n = 0; n < 40; ++n) {
    std::mt19937 random(seed * 7919u + n);
    networks.push_back(randomNetwork(random));
  }
  return networks;
}
