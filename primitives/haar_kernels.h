// See kernels.h.
#pragma once

#include "primitives/ippdefs.h"

// One weighted rectangle: its corners as distances, in floats of the integral, from the window's first
// element, in the order (right, bottom), (left, bottom), (right, top), (left, top).
struct HaarFeature {
  std::int32_t corner[4];
  float weight;
};

struct HaarClassifier {
  std::int32_t features;
  float threshold;
  float val1;
  float val2;
};

// One stage for one pitch of the integral: classifiers of two features, then of three, then all others.
struct HaarStage {
  const HaarClassifier* classifiers;
  const HaarFeature* features;
  int twos;
  int threes;
  int others;
  float threshold;
};

struct HaarKernels {
  // One row of both integrals, `width` + 1 values each; the first is taken from the row above.
  void (*integralRow)(const Ipp8u* src, const Ipp32f* above, Ipp32f* sum, const Ipp64f* aboveSqr, Ipp64f* sqr,
                      int width);
  // Clears the mask of positions that fail the stage; answers the number that survive.
  int (*stageRow)(const HaarStage& stage, const Ipp32f* sum, const Ipp32f* norm, Ipp8u* mask, int width);
};

void fillHaarKernelsBase(HaarKernels& table);
void fillHaarKernelsSse41(HaarKernels& table);
void fillHaarKernelsAvx2(HaarKernels& table);
