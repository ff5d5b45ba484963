#include <smmintrin.h>

#include "primitives/haar_vector.h"

namespace {

struct Floats4 {
  static constexpr int kLanes = 4;
  using Type = __m128;
  static Type load(const float* p) { return _mm_loadu_ps(p); }
  static Type set(float value) { return _mm_set1_ps(value); }
  static Type add(Type a, Type b) { return _mm_add_ps(a, b); }
  static Type sub(Type a, Type b) { return _mm_sub_ps(a, b); }
  static Type mul(Type a, Type b) { return _mm_mul_ps(a, b); }
  static Type greater(Type a, Type b) { return _mm_cmpgt_ps(a, b); }
  static Type select(Type mask, Type a, Type b) { return _mm_blendv_ps(b, a, mask); }
  static unsigned mask(Type a) { return static_cast<unsigned>(_mm_movemask_ps(a)); }
};

void stageBlocks(const HaarStage& stage, const Ipp32f* sum, const Ipp32f* norm, HaarBlock* blocks, int count) {
  runStageBlocks<Floats4, 2>(stage, sum, norm, blocks, count);
}

}  // namespace

void fillHaarKernelsSse41(HaarKernels& table) { table.stageBlocks = stageBlocks; }
