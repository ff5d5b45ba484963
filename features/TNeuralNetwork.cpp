#include "features/TNeuralNetwork.h"

#include "features/TPatchImage.h"
#include "primitives/ipps.h"
#include "primitives/kernels.h"

float TNeuralNetwork::PropagateImageI(TPatchImage& image, int left, int top) const {
  float sums[kHiddenNeurons];
  HiddenSums(image, left, top, sums);
  return Activate(sums);
}

float TNeuralNetwork::FastPropagate_I(const float* input) const {
  float sums[kHiddenNeurons];
  for (int j = 0; j < kHiddenNeurons; ++j) {
    ippsDotProd_32f(Hidden[j].Weights + 1, input, kPatchPixels, &sums[j]);
    sums[j] += Hidden[j].Weights[0];
  }
  return Activate(sums);
}

void TNeuralNetwork::HiddenSums(TPatchImage& image, int left, int top, float sums[kHiddenNeurons]) const {
  const float* const weights[] = {Hidden[0].Weights + 1, Hidden[1].Weights + 1, Hidden[2].Weights + 1};
  const TPatchScale scale = FindPatchScale(image.Range(left, top));
  kernels().patch.hiddenSums(image.Patch(left, top), TPatchImage::kStep, scale.factor, scale.offset, weights, sums);
  for (int j = 0; j < kHiddenNeurons; ++j) sums[j] += Hidden[j].Weights[0];
}

float TNeuralNetwork::OutputSum(const float activations[kHiddenNeurons]) const {
  float sum = OutputNeuron.Weights[0];
  for (int j = 0; j < kHiddenNeurons; ++j) sum += OutputNeuron.Weights[j + 1] * activations[j];
  return sum;
}

float TNeuralNetwork::Activate(float sums[kHiddenNeurons]) const {
  const auto halfTanh = kernels().patch.halfTanh;
  halfTanh(sums, sums, kHiddenNeurons);
  float output = OutputSum(sums);
  halfTanh(&output, &output, 1);
  return output;
}
