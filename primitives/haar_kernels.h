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

// Eight neighbouring window positions, which share contiguous loads. Kernels read all eight but only the
// lanes whose bit is set count.
struct HaarBlock {
  static constexpr int kPositions = 8;
  std::int32_t sumIndex;   // of the first position, in floats of the integral
  std::int32_t normIndex;  // the same in the map of deviations
  std::uint32_t lanes;     // bit k for position k
};

struct IntegralRow {
  const Ipp8u* src;
  const Ipp32f* above;
  Ipp32f* sum;
  const Ipp64f* aboveSqr;
  Ipp64f* sqr;
};

// The rows of both integrals at the top and the bottom of rectangles of one size, in pixels.
struct DeviationRows {
  const Ipp32f* top;
  const Ipp32f* bottom;
  const Ipp64f* topSqr;
  const Ipp64f* bottomSqr;
  int rectWidth;
  Ipp32f area;
};

struct HaarKernels {
  // One row of both integrals, `width` + 1 values each; the first is taken from the row above.
  void (*integralRow)(const IntegralRow& row, int width);
  // Deviations of the rectangles whose left columns are the first `count` elements of the rows.
  void (*stdDevRow)(const DeviationRows& rows, Ipp32f* dst, int count);
  // Clears the lanes that fail the stage.
  void (*stageBlocks)(const HaarStage& stage, const Ipp32f* sum, const Ipp32f* norm, HaarBlock* blocks, int count);
  // Like stageBlocks, but reads live positions only: for regions narrower than a block. One for all levels.
  void (*stageLanes)(const HaarStage& stage, const Ipp32f* sum, const Ipp32f* norm, HaarBlock* blocks, int count);
};

void fillHaarKernelsBase(HaarKernels& table);
void fillHaarKernelsSse41(HaarKernels& table);
void fillHaarKernelsAvx2(HaarKernels& table);
