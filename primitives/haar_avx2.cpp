#include <immintrin.h>

#include "primitives/haar_vector.h"

namespace {

struct Floats8 {
  static constexpr int kLanes = 8;
  using Type = __m256;
  static Type load(const float* p) { return _mm256_loadu_ps(p); }
  static Type set(float value) { return _mm256_set1_ps(value); }
  static Type add(Type a, Type b) { return _mm256_add_ps(a, b); }
  static Type sub(Type a, Type b) { return _mm256_sub_ps(a, b); }
  static Type mul(Type a, Type b) { return _mm256_mul_ps(a, b); }
  static Type greater(Type a, Type b) { return _mm256_cmp_ps(a, b, _CMP_GT_OQ); }
  static Type select(Type mask, Type a, Type b) { return _mm256_blendv_ps(b, a, mask); }
  static unsigned mask(Type a) { return static_cast<unsigned>(_mm256_movemask_ps(a)); }
};

void stageBlocks(const HaarStage& stage, const Ipp32f* sum, const Ipp32f* norm, HaarBlock* blocks, int count) {
  runStageBlocks<Floats8, 4>(stage, sum, norm, blocks, count);
}

}  // namespace

void fillHaarKernelsAvx2(HaarKernels& table) { table.stageBlocks = stageBlocks; }
