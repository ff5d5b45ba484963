#include <smmintrin.h>

#include "primitives/patch_loops.h"

namespace {

struct Floats4 {
  static constexpr int kLanes = 4;
  using Type = __m128;
  static Type load(const float* p) { return _mm_loadu_ps(p); }
  static void store(float* p, Type value) { _mm_storeu_ps(p, value); }
  static Type set(float value) { return _mm_set1_ps(value); }
  static Type add(Type a, Type b) { return _mm_add_ps(a, b); }
  static Type sub(Type a, Type b) { return _mm_sub_ps(a, b); }
  static Type mul(Type a, Type b) { return _mm_mul_ps(a, b); }
  static Type div(Type a, Type b) { return _mm_div_ps(a, b); }
  static Type less(Type a, Type b) { return _mm_cmplt_ps(a, b); }
  static Type equal(Type a, Type b) { return _mm_cmpeq_ps(a, b); }
  static Type both(Type a, Type b) { return _mm_and_ps(a, b); }
  static Type where(Type mask, Type a) { return _mm_and_ps(mask, a); }
  // The second operand is kept where the two are equal or no numbers.
  static Type atLeast(Type low, Type a) { return _mm_max_ps(low, a); }
  static Type atMost(Type high, Type a) { return _mm_min_ps(high, a); }
  static unsigned mask(Type m) { return static_cast<unsigned>(_mm_movemask_ps(m)); }
  static Type pixels(const Ipp8u* p) { return _mm_cvtepi32_ps(_mm_cvtepu8_epi32(_mm_loadu_si32(p))); }
  static Type tableScores(const float* table, Type x, Type y, Type counts) {
    const __m128i column = _mm_srli_epi32(_mm_cvttps_epi32(where(counts, x)), 1);
    const __m128i row = _mm_srli_epi32(_mm_cvttps_epi32(where(counts, y)), 1);
    alignas(16) int at[4];
    _mm_store_si128(reinterpret_cast<__m128i*>(at), _mm_add_epi32(_mm_slli_epi32(column, 7), row));
    return where(counts, _mm_setr_ps(table[at[0]], table[at[1]], table[at[2]], table[at[3]]));
  }
};

struct Doubles2 {
  static constexpr int kLanes = 2;
  using Type = __m128d;
  static Type widen(const float* p) { return _mm_set_pd(static_cast<double>(p[1]), static_cast<double>(p[0])); }
  static void narrow(float* p, Type value) {
    _mm_storel_epi64(reinterpret_cast<__m128i*>(p), _mm_castps_si128(_mm_cvtpd_ps(value)));
  }
  static Type set(double value) { return _mm_set1_pd(value); }
  static Type add(Type a, Type b) { return _mm_add_pd(a, b); }
  static Type sub(Type a, Type b) { return _mm_sub_pd(a, b); }
  static Type mul(Type a, Type b) { return _mm_mul_pd(a, b); }
  static Type div(Type a, Type b) { return _mm_div_pd(a, b); }
  static Type atMost(Type high, Type a) { return _mm_min_pd(high, a); }
  static Type magnitude(Type a) { return _mm_andnot_pd(set(-0.0), a); }
  static Type withSignOf(Type sign, Type a) { return _mm_or_pd(a, _mm_and_pd(set(-0.0), sign)); }
  static Type powerOfTwo(Type shifted) {
    const __m128i exponent = _mm_add_epi64(_mm_castpd_si128(shifted), _mm_set1_epi64x(1023));
    return _mm_castsi128_pd(_mm_slli_epi64(exponent, 52));
  }
};

struct Bytes16 {
  static constexpr int kLanes = 16;
  using Type = __m128i;
  static Type load(const Ipp8u* p) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p)); }
  static void store(Ipp8u* p, Type value) { _mm_storeu_si128(reinterpret_cast<__m128i*>(p), value); }
  static Type set(Ipp8u value) { return _mm_set1_epi8(static_cast<char>(value)); }
  static Type min(Type a, Type b) { return _mm_min_epu8(a, b); }
  static Type max(Type a, Type b) { return _mm_max_epu8(a, b); }
  static Type flip(Type a, Type mask) { return _mm_xor_si128(a, mask); }
};

}  // namespace

void fillVectorKernelsSse41(VectorKernels& table) { fillVectorKernels<Floats4>(table); }

void fillPatchKernelsSse41(PatchKernels& table) { fillPatchKernels<Floats4, Doubles2, Bytes16>(table); }
