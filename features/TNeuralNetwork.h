// The network of one node: how much a patch of the face image looks like the node's place on a face.
#pragma once

#include "primitives/patch_kernels.h"

class TPatchImage;

class alignas(64) TNeuron {
 public:
  TNeuron() {}
  virtual ~TNeuron() = default;

 private:
  // Puts the first input weight on a cache line of its own.
  [[maybe_unused]] float toCacheLine_[15 - sizeof(void*) / sizeof(float)];

 public:
  float Weights[1 + kPatchPixels];  // the bias, then one weight for each input
};

// 1024 inputs, three hidden neurons, one output neuron; every activation is tanh / 2. An output near -0.5 means that
// the patch matches. Evaluation changes nothing, so any number of threads may use a network at once.
class TNeuralNetwork {
 public:
  TNeuron Hidden[kHiddenNeurons];
  TNeuron OutputNeuron;  // uses the bias and one weight for each hidden neuron

  TNeuralNetwork() = default;
  virtual ~TNeuralNetwork() = default;

  // Reads one network at *stream and moves the cursor behind it. 0, or -1 if the stream is damaged or has no whole
  // network before `end`; the cursor then stays and the weights may have changed.
  int LoadFromStream(const unsigned char** stream, const unsigned char* end);
  // Evaluates the patch whose first pixel is (left, top) of the face, y from the top.
  float PropagateImageI(TPatchImage& image, int left, int top) const;
  // Evaluates 1024 normalised inputs.
  float FastPropagate_I(const float* input) const;

  // The two halves of an evaluation, between which many evaluations share their calls of tanh: the hidden neurons'
  // sums over a patch, and the output neuron's sum over their activations.
  void HiddenSums(TPatchImage& image, int left, int top, float sums[kHiddenNeurons]) const;
  float OutputSum(const float activations[kHiddenNeurons]) const;

 private:
  float Activate(float sums[kHiddenNeurons]) const;
};
