#include <cmath>

#include "primitives/haar_kernels.h"

namespace {

void integralRow(const Ipp8u* src, const Ipp32f* above, Ipp32f* sum, const Ipp64f* aboveSqr, Ipp64f* sqr, int width) {
  std::int32_t rowSum = 0;
  double rowSqr = 0;
  sum[0] = above[0];
  sqr[0] = aboveSqr[0];
  for (int c = 0; c < width; c++) {
    const int p = src[c];
    rowSum += p;
    rowSqr += p * p;
    sum[c + 1] = static_cast<float>(rowSum) + above[c + 1];
    sqr[c + 1] = aboveSqr[c + 1] + rowSqr;
  }
}

void stdDevRow(const Ipp32f* top, const Ipp32f* bottom, const Ipp64f* topSqr, const Ipp64f* bottomSqr, int rectWidth,
               Ipp32f area, Ipp32f* dst, int count) {
  for (int x = 0; x < count; x++) {
    const int right = x + rectWidth;
    const float mean = (bottom[right] - top[right] - bottom[x] + top[x]) / area;
    const double square = static_cast<double>(mean) * static_cast<double>(mean);
    const double v = (bottomSqr[right] - topSqr[right] - bottomSqr[x] + topSqr[x]) / static_cast<double>(area) - square;
    dst[x] = std::sqrt(static_cast<float>(v < 0 ? 0 : v));
  }
}

// Single precision, left to right: near the integral's offset of -2^24 another order gives other sums.
inline float weighted(const HaarFeature& feature, const Ipp32f* window) {
  const std::int32_t* corner = feature.corner;
  const float sum = window[corner[0]] - window[corner[1]] - window[corner[2]] + window[corner[3]];
  return sum * feature.weight;
}

float stageSum(const HaarStage& stage, const Ipp32f* window, float norm) {
  const HaarFeature* feature = stage.features;
  const HaarClassifier* end = stage.classifiers + stage.twos + stage.threes + stage.others;
  float sum = 0;
  for (const HaarClassifier* classifier = stage.classifiers; classifier != end; classifier++) {
    float value = weighted(*feature++, window);
    for (int i = 1; i < classifier->features; i++) value += weighted(*feature++, window);
    sum += classifier->threshold * norm > value ? classifier->val1 : classifier->val2;
  }
  return sum;
}

void stageBlocks(const HaarStage& stage, const Ipp32f* sum, const Ipp32f* norm, HaarBlock* blocks, int count) {
  for (HaarBlock* block = blocks; block != blocks + count; block++) {
    for (int k = 0; k < HaarBlock::kPositions; k++) {
      const std::uint32_t bit = 1u << k;
      if ((block->lanes & bit) == 0) continue;
      if (stage.threshold > stageSum(stage, sum + block->sumIndex + k, norm[block->normIndex + k]))
        block->lanes &= ~bit;
    }
  }
}

}  // namespace

void fillHaarKernelsBase(HaarKernels& table) {
  table.integralRow = integralRow;
  table.stdDevRow = stdDevRow;
  table.stageBlocks = stageBlocks;
}
