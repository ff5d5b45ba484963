#include "primitives/haar_rows.h"

namespace {

void integralRow(const IntegralRow& row, int width) {
  row.sum[0] = row.above[0];
  row.sqr[0] = row.aboveSqr[0];
  integrateColumns(row, 0, width, 0, 0);
}

void stdDevRow(const DeviationRows& rows, Ipp32f* dst, int count) {
  for (int x = 0; x < count; x++) dst[x] = deviationAt(rows, x);
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
