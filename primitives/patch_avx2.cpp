#include <immintrin.h>

#include "primitives/patch_loops.h"

namespace {

struct Floats8 {
  static constexpr int kLanes = 8;
  using Type = __m256;
  static Type load(const float* p) { return _mm256_loadu_ps(p); }
  static void store(float* p, Type value) { _mm256_storeu_ps(p, value); }
  static Type set(float value) { return _mm256_set1_ps(value); }
  static Type add(Type a, Type b) { return _mm256_add_ps(a, b); }
  static Type sub(Type a, Type b) { return _mm256_sub_ps(a, b); }
  static Type mul(Type a, Type b) { return _mm256_mul_ps(a, b); }
  static Type div(Type a, Type b) { return _mm256_div_ps(a, b); }
  static Type less(Type a, Type b) { return _mm256_cmp_ps(a, b, _CMP_LT_OQ); }
  static Type equal(Type a, Type b) { return _mm256_cmp_ps(a, b, _CMP_EQ_OQ); }
  static Type both(Type a, Type b) { return _mm256_and_ps(a, b); }
  static Type where(Type mask, Type a) { return _mm256_and_ps(mask, a); }
  // The second operand is kept where the two are equal or no numbers.
  static Type atLeast(Type low, Type a) { return _mm256_max_ps(low, a); }
  static Type atMost(Type high, Type a) { return _mm256_min_ps(high, a); }
  static unsigned mask(Type m) { return static_cast<unsigned>(_mm256_movemask_ps(m)); }
  static Type pixels(const Ipp8u* p) {
    return _mm256_cvtepi32_ps(_mm256_cvtepu8_epi32(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(p))));
  }
  static Type tableScores(const float* table, Type x, Type y, Type counts) {
    const __m256i column = _mm256_srli_epi32(_mm256_cvttps_epi32(where(counts, x)), 1);
    const __m256i row = _mm256_srli_epi32(_mm256_cvttps_epi32(where(counts, y)), 1);
    const __m256i at = _mm256_add_epi32(_mm256_slli_epi32(column, 7), row);
    return _mm256_mask_i32gather_ps(_mm256_setzero_ps(), table, at, counts, 4);
  }
};

struct Doubles4 {
  static constexpr int kLanes = 4;
  using Type = __m256d;
  static Type widen(const float* p) { return _mm256_cvtps_pd(_mm_loadu_ps(p)); }
  static void narrow(float* p, Type value) { _mm_storeu_ps(p, _mm256_cvtpd_ps(value)); }
  static Type set(double value) { return _mm256_set1_pd(value); }
  static Type add(Type a, Type b) { return _mm256_add_pd(a, b); }
  static Type sub(Type a, Type b) { return _mm256_sub_pd(a, b); }
  static Type mul(Type a, Type b) { return _mm256_mul_pd(a, b); }
  static Type div(Type a, Type b) { return _mm256_div_pd(a, b); }
  static Type atMost(Type high, Type a) { return _mm256_min_pd(high, a); }
  static Type magnitude(Type a) { return _mm256_andnot_pd(set(-0.0), a); }
  static Type withSignOf(Type sign, Type a) { return _mm256_or_pd(a, _mm256_and_pd(set(-0.0), sign)); }
  static Type powerOfTwo(Type shifted) {
    const __m256i exponent = _mm256_add_epi64(_mm256_castpd_si256(shifted), _mm256_set1_epi64x(1023));
    return _mm256_castsi256_pd(_mm256_slli_epi64(exponent, 52));
  }
};

struct Bytes32 {
  static constexpr int kLanes = 32;
  using Type = __m256i;
  static Type load(const Ipp8u* p) { return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p)); }
  static void store(Ipp8u* p, Type value) { _mm256_storeu_si256(reinterpret_cast<__m256i*>(p), value); }
  static Type set(Ipp8u value) { return _mm256_set1_epi8(static_cast<char>(value)); }
  static Type min(Type a, Type b) { return _mm256_min_epu8(a, b); }
  static Type max(Type a, Type b) { return _mm256_max_epu8(a, b); }
  static Type flip(Type a, Type mask) { return _mm256_xor_si256(a, mask); }
};

static_assert(Bytes32::kLanes <= kRangeMaxLanes);

}  // namespace

void fillVectorKernelsAvx2(VectorKernels& table) { fillVectorKernels<Floats8>(table); }

void fillPatchKernelsAvx2(PatchKernels& table) { fillPatchKernels<Floats8, Doubles4, Bytes32>(table); }
