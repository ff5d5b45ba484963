// Thirty-two-byte vectors, for the rows where they measurably gain: the two halves of a vector hold the
// two halves of a run of pixels, so that nothing has to cross between them.
#include <immintrin.h>

#include "primitives/pixel_levels.h"

namespace {

__m256i load(const Ipp8u* p) { return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p)); }

void store(Ipp8u* p, __m256i v) { _mm256_storeu_si256(reinterpret_cast<__m256i*>(p), v); }

__m256i loadHalves(const Ipp8u* low, const Ipp8u* high) {
  return _mm256_loadu2_m128i(reinterpret_cast<const __m128i*>(high), reinterpret_cast<const __m128i*>(low));
}

void storeHalves(Ipp8u* low, Ipp8u* high, __m256i v) {
  _mm256_storeu2_m128i(reinterpret_cast<__m128i*>(high), reinterpret_cast<__m128i*>(low), v);
}

__m256i bothHalves(__m128i v) { return _mm256_broadcastsi128_si256(v); }

__m256i alphaMask() { return _mm256_set1_epi32(static_cast<int>(0xff000000u)); }

__m256i weightPair(int low, int high) { return _mm256_set1_epi32(low | high << 16); }

// 96 bytes as four vectors whose halves each start with four pixels of three bytes: pixels 0 to 15 in the
// low halves, 16 to 31 in the high ones.
struct FourQuads {
  __m256i quad[4];
};

FourQuads loadQuads(const Ipp8u* p) {
  const __m256i v0 = loadHalves(p, p + 48), v1 = loadHalves(p + 16, p + 64), v2 = loadHalves(p + 32, p + 80);
  return {{v0, _mm256_alignr_epi8(v1, v0, 12), _mm256_alignr_epi8(v2, v1, 8), _mm256_srli_si256(v2, 4)}};
}

__m256i packGray(const __m256i* sums) {
  const __m256i low = _mm256_packs_epi32(_mm256_srli_epi32(sums[0], 12), _mm256_srli_epi32(sums[1], 12));
  const __m256i high = _mm256_packs_epi32(_mm256_srli_epi32(sums[2], 12), _mm256_srli_epi32(sums[3], 12));
  return _mm256_packus_epi16(low, high);
}

__m256i mul16(__m256i u, __m256i v) {
  const __m256i t = _mm256_mullo_epi16(u, v);
  return _mm256_mulhi_epu16(_mm256_add_epi16(t, _mm256_set1_epi16(1)), _mm256_set1_epi16(257));
}

__m256i blend16(__m256i factorA, __m256i a, __m256i rest, __m256i factorB, __m256i b) {
  return _mm256_add_epi16(mul16(factorA, a), mul16(rest, mul16(factorB, b)));
}

__m256i low16(__m256i bytes) { return _mm256_unpacklo_epi8(bytes, _mm256_setzero_si256()); }
__m256i high16(__m256i bytes) { return _mm256_unpackhi_epi8(bytes, _mm256_setzero_si256()); }

// As at the SSE4.1 level.
__m256i over(__m256i a, __m256i b) {
  const __m256i toAll = bothHalves(_mm_setr_epi8(3, 3, 3, 3, 7, 7, 7, 7, 11, 11, 11, 11, 15, 15, 15, 15));
  const __m256i alphaA = _mm256_shuffle_epi8(a, toAll), alphaB = _mm256_shuffle_epi8(b, toAll);
  const __m256i rest = _mm256_xor_si256(alphaA, _mm256_set1_epi8(-1));
  const __m256i factorA = _mm256_or_si256(alphaA, alphaMask()), factorB = _mm256_or_si256(alphaB, alphaMask());
  return _mm256_packus_epi16(blend16(low16(factorA), low16(a), low16(rest), low16(factorB), low16(b)),
                             blend16(high16(factorA), high16(a), high16(rest), high16(factorB), high16(b)));
}

void copyAC4C3(const Ipp8u* src, Ipp8u* dst, std::size_t count) {
  const __m256i gather = bothHalves(_mm_setr_epi8(0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1));
  std::size_t i = 0;
  for (; i + 32 <= count; i += 32) {
    const Ipp8u* from = src + 4 * i;
    Ipp8u* to = dst + 3 * i;
    __m256i v[4];
    for (int k = 0; k < 4; ++k) v[k] = _mm256_shuffle_epi8(loadHalves(from + 16 * k, from + 64 + 16 * k), gather);
    storeHalves(to, to + 48, _mm256_or_si256(v[0], _mm256_slli_si256(v[1], 12)));
    storeHalves(to + 16, to + 64, _mm256_or_si256(_mm256_srli_si256(v[1], 4), _mm256_slli_si256(v[2], 8)));
    storeHalves(to + 32, to + 80, _mm256_or_si256(_mm256_srli_si256(v[2], 8), _mm256_slli_si256(v[3], 4)));
  }
  pixel_sse41::copyAC4C3(src + 4 * i, dst + 3 * i, count - i);
}

void copyC3AC4(const Ipp8u* src, Ipp8u* dst, std::size_t count) {
  const __m256i spread = bothHalves(_mm_setr_epi8(0, 1, 2, -1, 3, 4, 5, -1, 6, 7, 8, -1, 9, 10, 11, -1));
  std::size_t i = 0;
  for (; i + 32 <= count; i += 32) {
    const FourQuads quads = loadQuads(src + 3 * i);
    for (int k = 0; k < 4; ++k) {
      Ipp8u *low = dst + 4 * i + 16 * k, *high = low + 64;
      const __m256i kept = _mm256_and_si256(alphaMask(), loadHalves(low, high));
      storeHalves(low, high, _mm256_or_si256(_mm256_shuffle_epi8(quads.quad[k], spread), kept));
    }
  }
  pixel_sse41::copyC3AC4(src + 3 * i, dst + 4 * i, count - i);
}

void grayC3(const Ipp8u* src, Ipp8u* dst, std::size_t count, const int* weights) {
  const __m256i take01 = bothHalves(_mm_setr_epi8(0, -1, 1, -1, 3, -1, 4, -1, 6, -1, 7, -1, 9, -1, 10, -1));
  const __m256i take2 = bothHalves(_mm_setr_epi8(2, -1, -1, -1, 5, -1, -1, -1, 8, -1, -1, -1, 11, -1, -1, -1));
  const __m256i w01 = weightPair(weights[0], weights[1]), w2 = weightPair(weights[2], 0);
  std::size_t i = 0;
  for (; i + 32 <= count; i += 32) {
    const FourQuads quads = loadQuads(src + 3 * i);
    __m256i sums[4];
    for (int k = 0; k < 4; ++k) {
      sums[k] = _mm256_add_epi32(_mm256_madd_epi16(_mm256_shuffle_epi8(quads.quad[k], take01), w01),
                                 _mm256_madd_epi16(_mm256_shuffle_epi8(quads.quad[k], take2), w2));
    }
    store(dst + i, packGray(sums));
  }
  pixel_sse41::grayC3(src + 3 * i, dst + i, count - i, weights);
}

void grayAC4(const Ipp8u* src, Ipp8u* dst, std::size_t count, const int* weights) {
  const __m256i even = _mm256_set1_epi16(0x00ff);
  const __m256i w02 = weightPair(weights[0], weights[2]), w1 = weightPair(weights[1], 0);
  std::size_t i = 0;
  for (; i + 32 <= count; i += 32) {
    const Ipp8u* from = src + 4 * i;
    __m256i sums[4];
    for (int k = 0; k < 4; ++k) {
      const __m256i v = loadHalves(from + 16 * k, from + 64 + 16 * k);
      sums[k] = _mm256_add_epi32(_mm256_madd_epi16(_mm256_and_si256(v, even), w02),
                                 _mm256_madd_epi16(_mm256_srli_epi16(v, 8), w1));
    }
    store(dst + i, packGray(sums));
  }
  pixel_sse41::grayAC4(src + 4 * i, dst + i, count - i, weights);
}

void alphaOver(const Ipp8u* a, const Ipp8u* b, Ipp8u* dst, std::size_t count) {
  std::size_t i = 0;
  for (; i + 8 <= count; i += 8) store(dst + 4 * i, over(load(a + 4 * i), load(b + 4 * i)));
  pixel_sse41::alphaOver(a + 4 * i, b + 4 * i, dst + 4 * i, count - i);
}

}  // namespace

void fillPixelKernelsAvx2(PixelKernels& table) {
  table.copyAC4C3 = copyAC4C3;
  table.copyC3AC4 = copyC3AC4;
  table.grayC3 = grayC3;
  table.grayAC4 = grayAC4;
  table.alphaOver = alphaOver;
}
