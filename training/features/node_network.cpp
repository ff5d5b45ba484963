#include "training/features/node_network.h"

#include <cmath>
#include <cstddef>

static_assert(offsetof(NodeNetwork, biases) == NodeNetwork::kInputWeights * sizeof(float) &&
              offsetof(NodeNetwork, output) == (NodeNetwork::kInputWeights + kHiddenNeurons) * sizeof(float));

namespace {

constexpr int kLanes = 16;

float activation(float sum) { return 0.5f * std::tanh(sum); }
// By the activation's own value.
float slope(float value) { return 0.5f - 2 * value * value; }

float total(const float* lanes) {
  float sum = 0;
  for (int j = 0; j < kLanes; ++j) sum += lanes[j];
  return sum;
}

}  // namespace

// Small random weights; one hidden neuron starts for a match and two against it.
NodeNetwork randomNetwork(std::mt19937& random) {
  std::normal_distribution<float> normal;
  NodeNetwork network;
  for (int k = 0; k < kHiddenNeurons; ++k) {
    for (float& weight : network.weights[k]) weight = 0.03f * normal(random);
    network.output[k + 1] = (k == 0 ? 1.0f : -1.0f) + 0.3f * normal(random);
  }
  network.output[0] = 0.5f;
  return network;
}

// The library sums in another order; the difference is far below what training reaches.
float evaluateNetwork(const NodeNetwork& network, const float* inputs, float hidden[kHiddenNeurons]) {
  float sums[kHiddenNeurons][kLanes] = {};
  for (int i = 0; i < kPatchPixels; i += kLanes) {
    for (int k = 0; k < kHiddenNeurons; ++k) {
      for (int j = 0; j < kLanes; ++j) sums[k][j] += network.weights[k][i + j] * inputs[i + j];
    }
  }
  float sum = network.output[0];
  for (int k = 0; k < kHiddenNeurons; ++k) {
    hidden[k] = activation(total(sums[k]) + network.biases[k]);
    sum += network.output[k + 1] * hidden[k];
  }
  return activation(sum);
}

void addGradient(const NodeNetwork& network, const float* inputs, const float hidden[kHiddenNeurons], float value,
                 float lossSlope, NodeNetwork& sum) {
  const float outer = lossSlope * slope(value);
  sum.output[0] += outer;
  for (int k = 0; k < kHiddenNeurons; ++k) {
    sum.output[k + 1] += outer * hidden[k];
    const float inner = outer * network.output[k + 1] * slope(hidden[k]);
    sum.biases[k] += inner;
    float* const weights = sum.weights[k];
    for (int i = 0; i < kPatchPixels; ++i) weights[i] += inner * inputs[i];
  }
}

float addSquareGradient(const NodeNetwork& network, const float* inputs, float target, float weight, NodeNetwork& sum) {
  float hidden[kHiddenNeurons];
  const float value = evaluateNetwork(network, inputs, hidden);
  const float error = value - target;
  addGradient(network, inputs, hidden, value, 2 * weight * error, sum);
  return error * error;
}

void AdamSteps::step(NodeNetwork& network, NodeNetwork& gradient, float scale, double rate, double decay) {
  constexpr float kMeanShare = 0.9f, kSquareShare = 0.999f, kLeast = 1e-8f;
  ++steps_;
  const auto meanScale = static_cast<float>(rate / (1 - std::pow(kMeanShare, steps_)));
  const auto squareScale = static_cast<float>(1 / std::sqrt(1 - std::pow(kSquareShare, steps_)));
  float* const parameters = network.parameters();
  const float* const gradients = gradient.parameters();
  float* const mean = mean_.data();
  float* const square = square_.data();
  for (std::size_t i = 0; i < NodeNetwork::kParameters; ++i) {
    const float g = scale * gradients[i];
    mean[i] = kMeanShare * mean[i] + (1 - kMeanShare) * g;
    square[i] = kSquareShare * square[i] + (1 - kSquareShare) * g * g;
    parameters[i] -= meanScale * mean[i] / (std::sqrt(square[i]) * squareScale + kLeast);
  }
  const auto kept = static_cast<float>(1 - rate * decay);
  for (std::size_t i = 0; i < NodeNetwork::kInputWeights; ++i) parameters[i] *= kept;
}
