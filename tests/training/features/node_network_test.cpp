#include "training/features/node_network.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

struct Sample {
  alignas(64) float inputs[kPatchPixels];
  float target;
};

Sample randomSample(std::mt19937& random) {
  Sample sample;
  std::uniform_real_distribution<float> uniform(-0.5f, 0.5f);
  for (float& input : sample.inputs) input = uniform(random);
  sample.target = uniform(random);
  return sample;
}

// The squared error in double precision.
double lossOf(const double* p, const Sample& sample) {
  double sum = p[NodeNetwork::kInputWeights + kHiddenNeurons];
  for (std::size_t k = 0; k < kHiddenNeurons; ++k) {
    double inner = p[NodeNetwork::kInputWeights + k];
    for (std::size_t i = 0; i < kPatchPixels; ++i) {
      inner += p[k * kPatchPixels + i] * static_cast<double>(sample.inputs[i]);
    }
    sum += p[NodeNetwork::kInputWeights + kHiddenNeurons + 1 + k] * 0.5 * std::tanh(inner);
  }
  const double error = 0.5 * std::tanh(sum) - static_cast<double>(sample.target);
  return error * error;
}

TEST(NodeNetwork, GradientIsThatOfFiniteDifferences) {
  std::mt19937 random(1);
  NodeNetwork network = randomNetwork(random);
  NodeNetwork gradient;
  const Sample first = randomSample(random), second = randomSample(random);
  addGradient(network, first.inputs, first.target, gradient);
  addGradient(network, second.inputs, second.target, gradient);

  std::vector<double> p(network.parameters(), network.parameters() + NodeNetwork::kParameters);
  const auto loss = [&] { return lossOf(p.data(), first) + lossOf(p.data(), second); };
  for (std::size_t i = 0; i < p.size(); i += i < 3000 ? 7 : 1) {
    constexpr double kStep = 1e-5;
    const double kept = p[i];
    p[i] = kept + kStep;
    const double above = loss();
    p[i] = kept - kStep;
    const double below = loss();
    p[i] = kept;
    const double expected = (above - below) / (2 * kStep);
    EXPECT_NEAR(gradient.parameters()[i], expected, 1e-6 + 1e-4 * std::abs(expected)) << i;
  }
}

}  // namespace
