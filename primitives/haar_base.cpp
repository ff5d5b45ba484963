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

// Single precision, left to right: near the offset of -2^24 another order gives other sums.
inline float rectangleValue(const HaarFeature& feature, const Ipp32f* window) {
  const std::int32_t* corner = feature.corner;
  const float sum = window[corner[0]] - window[corner[1]] - window[corner[2]] + window[corner[3]];
  return sum * feature.weight;
}

float stageSum(const HaarStage& stage, const Ipp32f* window, float norm) {
  const HaarFeature* feature = stage.features;
  const HaarClassifier* end = stage.classifiers + stage.twos + stage.threes + stage.others;
  float sum = 0;
  for (const HaarClassifier* classifier = stage.classifiers; classifier != end; classifier++) {
    float value = rectangleValue(*feature++, window);
    for (int i = 1; i < classifier->features; i++) value += rectangleValue(*feature++, window);
    sum += classifier->threshold * norm > value ? classifier->val1 : classifier->val2;
  }
  return sum;
}

int stageRow(const HaarStage& stage, const Ipp32f* sum, const Ipp32f* norm, Ipp8u* mask, int width) {
  int positive = 0;
  for (int x = 0; x < width; x++) {
    if (mask[x] == 0) continue;
    if (stage.threshold > stageSum(stage, sum + x, norm[x])) {
      mask[x] = 0;
    } else {
      positive++;
    }
  }
  return positive;
}

}  // namespace

void fillHaarKernelsBase(HaarKernels& table) {
  table.integralRow = integralRow;
  table.stageRow = stageRow;
}
