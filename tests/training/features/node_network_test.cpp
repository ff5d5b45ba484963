#include "training/features/node_network.h"

#include <gtest/gtest.h>

#include <algorithm>
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

TEST(NodeNetwork, ReturnsTheSquaredError) {
  std::mt19937 random(2);
  NodeNetwork network = randomNetwork(random), gradient;
  const Sample sample = randomSample(random);
  const std::vector<double> p(network.parameters(), network.parameters() + NodeNetwork::kParameters);
  EXPECT_NEAR(addGradient(network, sample.inputs, sample.target, gradient), lossOf(p.data(), sample), 1e-6);
}

// The first step has the size of the rate whatever the size of the gradient; only input weights decay.
TEST(AdamSteps, StartWithTheRate) {
  NodeNetwork network, gradient;
  std::fill_n(network.parameters(), NodeNetwork::kParameters, 1.0f);
  for (std::size_t i = 0; i < NodeNetwork::kParameters; ++i) {
    gradient.parameters()[i] = (i % 2 == 0 ? 1.0f : -1.0f) * static_cast<float>(1 + i % 50);
  }
  AdamSteps().step(network, gradient, 0.01f, 1e-2, 0.5);
  for (std::size_t i = 0; i < NodeNetwork::kParameters; ++i) {
    const double moved = i % 2 == 0 ? 0.99 : 1.01;
    EXPECT_NEAR(network.parameters()[i], i < NodeNetwork::kInputWeights ? moved * 0.995 : moved, 1e-5) << i;
  }
}

TEST(AdamSteps, FindAMinimum) {
  NodeNetwork network, gradient;
  AdamSteps adam;
  for (int step = 0; step < 3000; ++step) {
    for (std::size_t i = 0; i < NodeNetwork::kParameters; ++i) {
      gradient.parameters()[i] = 2 * (network.parameters()[i] - static_cast<float>(i % 3));
    }
    adam.step(network, gradient, 1, 2e-3, 0);
  }
  for (std::size_t i = 0; i < NodeNetwork::kParameters; ++i) {
    ASSERT_NEAR(network.parameters()[i], static_cast<double>(i % 3), 1e-2) << i;
  }
}

}  // namespace
