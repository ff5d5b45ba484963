#include <immintrin.h>

#include "primitives/overlay_vector.h"

namespace {

struct Floats8 {
  static constexpr int kLanes = 8;
  using Type = __m256;
  static Type zero() { return _mm256_setzero_ps(); }
  static Type load(const float* p) { return _mm256_loadu_ps(p); }
  static void store(float* p, Type a) { _mm256_storeu_ps(p, a); }
  static Type set(float value) { return _mm256_set1_ps(value); }
  static Type add(Type a, Type b) { return _mm256_add_ps(a, b); }
  static Type mul(Type a, Type b) { return _mm256_mul_ps(a, b); }
};

inline __m256 atLeastEight(__m256 values) {
  const __m256 least = _mm256_set1_ps(kLeastMean);
  const __m256 magnitude = _mm256_andnot_ps(_mm256_set1_ps(-0.0F), values);
  return _mm256_blendv_ps(values, least, _mm256_cmp_ps(magnitude, least, _CMP_LT_OQ));
}

// The ratios of two pixels, a channel a lane.
inline __m256 ratios(const LocalMeans& means, std::size_t k, __m256 alpha) {
  const __m256 rest = _mm256_sub_ps(_mm256_set1_ps(1.0F), alpha);
  const auto mix = [&](const Ipp32f* large, const Ipp32f* small) {
    return _mm256_add_ps(_mm256_mul_ps(atLeastEight(_mm256_loadu_ps(large + k)), alpha),
                         _mm256_mul_ps(atLeastEight(_mm256_loadu_ps(small + k)), rest));
  };
  return atLeastEight(
      _mm256_div_ps(mix(means.overlayLarge, means.overlaySmall), mix(means.backLarge, means.backSmall)));
}

void matchRow(Ipp8u* pixels, const LocalMeans& means, unsigned channels, std::size_t count) {
  const __m128i mask = _mm_set1_epi32(channelMask(channels));
  std::size_t i = 0;
  for (; i + 2 <= count; i += 2) {
    __m128i* const place = reinterpret_cast<__m128i*>(pixels + 4 * i);
    const __m128i old = _mm_loadl_epi64(place);
    const __m256 values = _mm256_cvtepi32_ps(_mm256_cvtepu8_epi32(old));
    const __m256 alpha = _mm256_div_ps(_mm256_permute_ps(values, 0xff), _mm256_set1_ps(255.0F));
    const __m256i whole = _mm256_cvtps_epi32(_mm256_div_ps(values, ratios(means, 4 * i, alpha)));
    const __m128i words = _mm_packs_epi32(_mm256_castsi256_si128(whole), _mm256_extracti128_si256(whole, 1));
    _mm_storel_epi64(place, _mm_blendv_epi8(old, _mm_packus_epi16(words, words), mask));
  }
  matchPixels(pixels, means, channels, i, count);
}

}  // namespace

void fillOverlayKernelsAvx2(OverlayKernels& table) {
  table.gaussRow = gaussRowVectors<Floats8>;
  table.gaussColumns = gaussColumnsVectors<Floats8>;
  table.matchRow = matchRow;
}
