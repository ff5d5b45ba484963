#include <cstring>

#include "primitives/haar_rows.h"
#include "primitives/haar_vector.h"

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

void stageLanes(const HaarStage& stage, const Ipp32f* sum, const Ipp32f* norm, HaarBlock* blocks, int count) {
  for (HaarBlock* block = blocks; block != blocks + count; block++) {
    for (int k = 0; k < HaarBlock::kPositions; k++) {
      const std::uint32_t bit = 1u << k;
      if ((block->lanes & bit) == 0) continue;
      if (stage.threshold > stageSum(stage, sum + block->sumIndex + k, norm[block->normIndex + k]))
        block->lanes &= ~bit;
    }
  }
}

// Four floats in the compiler's own vector type: the instructions that every processor of the kind has.
struct PortableFloats {
  static constexpr int kLanes = 4;
  typedef float Type __attribute__((vector_size(16)));
  typedef std::int32_t Mask __attribute__((vector_size(16)));
  static Type load(const float* p) {
    Type value;
    std::memcpy(&value, p, sizeof(value));
    return value;
  }
  static Type set(float value) { return Type{value, value, value, value}; }
  static Type add(Type a, Type b) { return a + b; }
  static Type sub(Type a, Type b) { return a - b; }
  static Type mul(Type a, Type b) { return a * b; }
  static Mask greater(Type a, Type b) { return a > b; }
  static Type select(Mask mask, Type a, Type b) { return reinterpret_cast<Type>((mask & bits(a)) | (~mask & bits(b))); }
  static unsigned mask(Mask m) { return static_cast<unsigned>((m[0] & 1) | (m[1] & 2) | (m[2] & 4) | (m[3] & 8)); }

 private:
  static Mask bits(Type value) { return reinterpret_cast<Mask>(value); }
};

void stageBlocks(const HaarStage& stage, const Ipp32f* sum, const Ipp32f* norm, HaarBlock* blocks, int count) {
  runStageBlocks<PortableFloats, 2>(stage, sum, norm, blocks, count);
}

}  // namespace

void fillHaarKernelsBase(HaarKernels& table) {
  table.integralRow = integralRow;
  table.stdDevRow = stdDevRow;
  table.stageBlocks = stageBlocks;
  table.stageLanes = stageLanes;
}
