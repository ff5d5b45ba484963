// One node's network as training changes it.
#pragma once

#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "primitives/patch_kernels.h"

// The input weights first, since only they decay.
struct NodeNetwork {
  static constexpr std::size_t kInputWeights = std::size_t{kHiddenNeurons} * kPatchPixels;
  static constexpr std::size_t kParameters = kInputWeights + kHiddenNeurons + 1 + kHiddenNeurons;

  alignas(64) float weights[kHiddenNeurons][kPatchPixels] = {};
  float biases[kHiddenNeurons] = {};
  float output[1 + kHiddenNeurons] = {};  // the bias first

  float* parameters() { return &weights[0][0]; }
};

NodeNetwork randomNetwork(std::mt19937& random);

// A network's value at 1024 inputs; `hidden` receives the activations of the hidden neurons.
float evaluateNetwork(const NodeNetwork& network, const float* inputs, float hidden[kHiddenNeurons]);

// Adds to `sum` the gradient of a loss whose derivative by the network's value is `lossSlope`; `hidden` and `value`
// come from evaluateNetwork.
void addGradient(const NodeNetwork& network, const float* inputs, const float hidden[kHiddenNeurons], float value,
                 float lossSlope, NodeNetwork& sum);

// Adds the gradient of (value - target)^2, times `weight`, to `sum` and returns that square.
float addSquareGradient(const NodeNetwork& network, const float* inputs, float target, float weight, NodeNetwork& sum);

// Adam (Kingma and Ba 2015) with the decay apart from the gradient.
class AdamSteps {
 public:
  AdamSteps() : mean_(NodeNetwork::kParameters), square_(NodeNetwork::kParameters) {}
  // `scale` times the gradient counts.
  void step(NodeNetwork& network, NodeNetwork& gradient, float scale, double rate, double decay);

 private:
  std::vector<float> mean_;
  std::vector<float> square_;
  int steps_ = 0;
};
