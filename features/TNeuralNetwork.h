// The network of one node: how much a patch of the face image looks like the node's place on a face.
#pragma once

#include "image/TIppiImage.h"
#include "primitives/patch_kernels.h"




// Side of the frame that patches are taken from, and of the tables over its positions.
constexpr int kFaceFrameSide = 256;

class TNeuron {
 public:
  float Weights[1 + kPatchPixels];  // the bias, then one weight for each input
  float Output;                     // the last activation

  TNeuron() {}
  virtual ~TNeuron() = default;
};

// 1024 inputs, three hidden neurons, one output neuron; every activation is tanh / 2. An output near -0.5 means that
// the patch matches. A network serves one evaluation at a time.
class TNeuralNetwork {
 public:
  // Gray ranges of the patches by their centre, [x][y], 256 by 256, and whether a range is known. All networks that
  // look at one image share the owner's tables.
  unsigned char** PatchLow = nullptr;
  unsigned char** PatchHigh = nullptr;
  unsigned char** PatchKnown = nullptr;
  TNeuron Hidden[kHiddenNeurons];
  TNeuron OutputNeuron;  // uses the bias and one weight for each hidden neuron
  TIppiImage Patch;      // 32 by 32 pixels without padding, the patch's top row first

  TNeuralNetwork();
  TNeuralNetwork(const TNeuralNetwork&) = delete;
  TNeuralNetwork& operator=(const TNeuralNetwork&) = delete;
  virtual ~TNeuralNetwork() = default;

  // Reads one network at *stream and moves the cursor behind it. 0, or -1 if the stream is damaged or has no whole
  // network before `end`; the cursor then stays and the weights may have changed.
  int LoadFromStream(const unsigned char** stream, const unsigned char* end);
  // Evaluates the patch with the given corners, both inclusive, y from the top of the face. `image` is the face
  // mirrored top to bottom and 256 rows high; what lies outside it is black.
  float PropagateImageI(TIppiImage& image, int x1, int y1, int x2, int y2);
  // Evaluates 1024 normalised inputs.
  float FastPropagate_I(float* input);

 private:
  void FindRange(unsigned char& low, unsigned char& high, int cx, int cy);
};
