#include <smmintrin.h>

#include <cstring>

#include "primitives/overlay_vector.h"

namespace {

struct Floats4 {
  static constexpr int kLanes = 4;
  using Type = __m128;
  static Type zero() { return _mm_setzero_ps(); }
  static Type load(const float* p) { return _mm_loadu_ps(p); }
  static void store(float* p, Type a) { _mm_storeu_ps(p, a); }
  static Type set(float value) { return _mm_set1_ps(value); }
  static Type add(Type a, Type b) { return _mm_add_ps(a, b); }
  static Type mul(Type a, Type b) { return _mm_mul_ps(a, b); }
};

void splitC4(const Ipp32f* src, Ipp32f* const dst[4], std::size_t count) {
  std::size_t i = 0;
  for (; i + 4 <= count; i += 4) {
    __m128 a = _mm_loadu_ps(src + 4 * i), b = _mm_loadu_ps(src + 4 * i + 4);
    __m128 c = _mm_loadu_ps(src + 4 * i + 8), d = _mm_loadu_ps(src + 4 * i + 12);
    _MM_TRANSPOSE4_PS(a, b, c, d);
    _mm_storeu_ps(dst[0] + i, a);
    _mm_storeu_ps(dst[1] + i, b);
    _mm_storeu_ps(dst[2] + i, c);
    _mm_storeu_ps(dst[3] + i, d);
  }
  splitPixels(src, dst, i, count);
}

void joinC4(const Ipp32f* const src[4], Ipp32f* dst, std::size_t count) {
  std::size_t i = 0;
  for (; i + 4 <= count; i += 4) {
    __m128 a = _mm_loadu_ps(src[0] + i), b = _mm_loadu_ps(src[1] + i);
    __m128 c = _mm_loadu_ps(src[2] + i), d = _mm_loadu_ps(src[3] + i);
    _MM_TRANSPOSE4_PS(a, b, c, d);
    _mm_storeu_ps(dst + 4 * i, a);
    _mm_storeu_ps(dst + 4 * i + 4, b);
    _mm_storeu_ps(dst + 4 * i + 8, c);
    _mm_storeu_ps(dst + 4 * i + 12, d);
  }
  joinPixels(src, dst, i, count);
}

inline __m128 atLeastFour(__m128 values) {
  const __m128 least = _mm_set1_ps(kLeastMean);
  const __m128 magnitude = _mm_andnot_ps(_mm_set1_ps(-0.0F), values);
  return _mm_blendv_ps(values, least, _mm_cmplt_ps(magnitude, least));
}

// The ratios of one pixel, a channel a lane.
inline __m128 ratios(const LocalMeans& means, std::size_t k, __m128 alpha) {
  const __m128 rest = _mm_sub_ps(_mm_set1_ps(1.0F), alpha);
  const auto mix = [&](const Ipp32f* large, const Ipp32f* small) {
    return _mm_add_ps(_mm_mul_ps(atLeastFour(_mm_loadu_ps(large + k)), alpha),
                      _mm_mul_ps(atLeastFour(_mm_loadu_ps(small + k)), rest));
  };
  return atLeastFour(_mm_div_ps(mix(means.overlayLarge, means.overlaySmall), mix(means.backLarge, means.backSmall)));
}

void matchRow(Ipp8u* pixels, const LocalMeans& means, unsigned channels, std::size_t count) {
  const __m128i mask = _mm_cvtsi32_si128(channelMask(channels));
  for (std::size_t i = 0; i < count; ++i) {
    int bytes;
    std::memcpy(&bytes, pixels + 4 * i, sizeof(bytes));
    const __m128i old = _mm_cvtsi32_si128(bytes);
    const __m128 values = _mm_cvtepi32_ps(_mm_cvtepu8_epi32(old));
    const __m128 alpha = _mm_div_ps(_mm_shuffle_ps(values, values, 0xff), _mm_set1_ps(255.0F));
    const __m128i whole = _mm_cvtps_epi32(_mm_div_ps(values, ratios(means, 4 * i, alpha)));
    const __m128i words = _mm_packs_epi32(whole, whole);
    bytes = _mm_cvtsi128_si32(_mm_blendv_epi8(old, _mm_packus_epi16(words, words), mask));
    std::memcpy(pixels + 4 * i, &bytes, sizeof(bytes));
  }
}

}  // namespace

void fillOverlayKernelsSse41(OverlayKernels& table) {
  table.gaussRow = gaussRowVectors<Floats4>;
  table.gaussColumns = gaussColumnsVectors<Floats4>;
  table.splitC4 = splitC4;
  table.joinC4 = joinC4;
  table.matchRow = matchRow;
}
