#include "training/features/node_trainer.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>

#include "training/evaluation/parallel.h"

namespace {

constexpr std::size_t kBatch = 256;
constexpr double kLeastRate = 1e-6;

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
  float uniform() { return std::uniform_real_distribution<float>()(random_); }
  double normal() { return normal_(random_); }

  TrainedPlace drawPlace(std::size_t frame, const TrainedPlace& truth) {
    if (!set_.grids.empty() && !set_.grids[frame].empty() && uniform() < options_.minedShare) return minedPlace(frame);
    return drawTrainedPlace(options_, truth, random_);
  }

  TrainedPlace minedPlace(std::size_t frame) {
    const auto& grids = set_.grids[frame];
    const SearchGrid& grid = grids[std::uniform_int_distribution<std::size_t>(0, grids.size() - 1)(random_)];
    return {grid[2 * node_] + options_.minedNear * normal(), grid[2 * node_ + 1] + options_.minedNear * normal()};
  }

  double addSample(std::size_t index) {
    const PatchFrame& frame = set_.frames[index];
    const TrainedPlace truth = {frame.points[2 * node_] + set_.shifts[2 * node_],
                                frame.points[2 * node_ + 1] + set_.shifts[2 * node_ + 1]};
    const double loss = addPatch(frame, truth, drawPlace(index, truth), bells_, 1, network_, gradient_);
    if (++inBatch_ == kBatch) step();
    return loss;
  }

  void step() {
    const double done = static_cast<double>(steps_++) / static_cast<double>(total_);
    adam_.step(network_, gradient_, 1.0f / kBatch, rateAt(options_.rate, options_.warmUp, done), options_.decay);
    gradient_ = NodeNetwork{};
    inBatch_ = 0;
  }

  const TrainingSet& set_;
  const TrainerOptions& options_;
  std::size_t node_;
  const TargetBells& bells_;
  NodeNetwork& network_;
  std::mt19937 random_;
  std::normal_distribution<double> normal_;
  AdamSteps adam_;
  NodeNetwork gradient_;
  std::size_t inBatch_ = 0, steps_ = 0, total_ = 0;
};

}  // namespace

double rateAt(double rate, double warmUp, double done) {
  if (done < warmUp) return rate * done / warmUp + kLeastRate;
  return rate * 0.5 * (1 + std::cos(std::numbers::pi * std::min(1.0, done))) + kLeastRate;
}

TrainedPlace drawTrainedPlace(const TrainerOptions& options, const TrainedPlace& truth, std::mt19937& random) {
  const auto uniform = [&random] { return std::uniform_real_distribution<double>()(random); };
  const auto normal = [&random] { return std::normal_distribution<double>()(random); };
  const double u = uniform();
  if (u < options.nearShare) {
    const double x = truth.x + options.near * normal();
    return {x, truth.y + options.near * normal()};
  }
  const double reach = u < options.nearShare + options.middleShare ? options.middle : options.far;
  const double x = truth.x + reach * (2 * uniform() - 1);
  return {x, truth.y + reach * (2 * uniform() - 1)};
}

double addPatch(const PatchFrame& frame, const TrainedPlace& truth, const TrainedPlace& place, const TargetBells& bells,
                double weight, const NodeNetwork& network, NodeNetwork& gradient) {
  const int x = static_cast<int>(std::floor(std::clamp(place.x, 0.0, kFrameSide - 1.0)));
  const int y = static_cast<int>(std::floor(std::clamp(place.y, 0.0, kFrameSide - 1.0)));
  // The search reads this patch for all places in the pixel; it stands for the pixel's middle.
  const double dx = x + 0.5 - truth.x, dy = y + 0.5 - truth.y;
  alignas(64) float inputs[kPatchPixels];
  frame.read(x, y, inputs);
  const float target = targetAt(bells, dx * dx + dy * dy);
  return static_cast<double>(addSquareGradient(network, inputs, target, static_cast<float>(weight), gradient));
}

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
