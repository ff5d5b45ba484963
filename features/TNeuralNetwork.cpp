#include "features/TNeuralNetwork.h"

#include <cmath>

#include "features/patch.h"
#include "primitives/ipps.h"

namespace {

float activation(float sum) { return static_cast<float>(0.5 * std::tanh(static_cast<double>(sum))); }

}  // namespace

TNeuralNetwork::TNeuralNetwork() : Patch(imGray8) {
  Patch.AllocNew(kPatchSide, kPatchSide);
  Patch.Step = kPatchSide;
}

float TNeuralNetwork::PropagateImageI(TIppiImage& image, int x1, int y1, int x2, int y2) {
  // The image is upside down, so flipped rows put the patch's top row first in memory.
  image.CopyTo(Patch, x1, kFaceFrameSide - 1 - y2, x2, kFaceFrameSide - 1 - y1, true);
  TPatchRange range;
  FindRange(range.Low, range.High, (x1 + x2) / 2, (y1 + y2) / 2);
  float input[kPatchPixels];
  NormalisePatch(Patch.Pixels, range, input);
  return FastPropagate_I(input);
}

void TNeuralNetwork::FindRange(unsigned char& low, unsigned char& high, int cx, int cy) {
  if (!PatchKnown[cx][cy]) {
    const TPatchRange range = FindPatchRange(Patch.Pixels);
    PatchLow[cx][cy] = range.Low;
    PatchHigh[cx][cy] = range.High;
    PatchKnown[cx][cy] = 1;
  }
  low = PatchLow[cx][cy];
  high = PatchHigh[cx][cy];
}

float TNeuralNetwork::FastPropagate_I(float* input) {
  for (TNeuron& neuron : Hidden) {
    float sum = 0.0F;
    ippsDotProd_32f(neuron.Weights + 1, input, kPatchPixels, &sum);
    neuron.Output = activation(sum + neuron.Weights[0]);
  }
  float sum = OutputNeuron.Weights[0];
  for (int j = 0; j < kHiddenNeurons; ++j) sum += OutputNeuron.Weights[j + 1] * Hidden[j].Output;
  OutputNeuron.Output = activation(sum);
  return OutputNeuron.Output;
}
