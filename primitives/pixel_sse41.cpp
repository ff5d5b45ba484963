// Sixteen-byte vectors. Three-channel rows go sixteen pixels, 48 bytes, at a time: whole vectors on both
// sides, so that nothing outside the row is touched.
#include <smmintrin.h>

#include <cstring>

#include "primitives/pixel_levels.h"

namespace {

__m128i load(const Ipp8u* p) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p)); }

void store(Ipp8u* p, __m128i v) { _mm_storeu_si128(reinterpret_cast<__m128i*>(p), v); }

__m128i alphaMask() { return _mm_set1_epi32(static_cast<int>(0xff000000u)); }

// The colours of `colour` with the alphas of `alpha`.
__m128i withAlphaOf(__m128i colour, __m128i alpha) {
  return _mm_or_si128(_mm_andnot_si128(alphaMask(), colour), _mm_and_si128(alphaMask(), alpha));
}

// Four pixels of three bytes to four bytes, the fourth 0, and back into the low twelve bytes.
__m128i spread() { return _mm_setr_epi8(0, 1, 2, -1, 3, 4, 5, -1, 6, 7, 8, -1, 9, 10, 11, -1); }
__m128i gather() { return _mm_setr_epi8(0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1); }

// 48 bytes as four vectors that each start with four pixels of three bytes.
struct FourQuads {
  __m128i quad[4];
};

FourQuads loadQuads(const Ipp8u* p) {
  const __m128i v0 = load(p), v1 = load(p + 16), v2 = load(p + 32);
  return {{v0, _mm_alignr_epi8(v1, v0, 12), _mm_alignr_epi8(v2, v1, 8), _mm_srli_si128(v2, 4)}};
}

// Twelve bytes, no more.
__m128i load12(const Ipp8u* p) {
  int last;
  std::memcpy(&last, p + 8, 4);
  return _mm_insert_epi32(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(p)), last, 2);
}

void store12(Ipp8u* p, __m128i v) {
  const int last = _mm_extract_epi32(v, 2);
  _mm_storel_epi64(reinterpret_cast<__m128i*>(p), v);
  std::memcpy(p + 8, &last, 4);
}

__m128i swapMask(const int* order, int channels, int pixels) {
  alignas(16) signed char mask[16];
  for (int i = 0; i < 16; ++i) mask[i] = static_cast<signed char>(i);
  for (int i = 0; i < pixels * channels; ++i) {
    mask[i] = static_cast<signed char>(i - i % channels + order[i % channels]);
  }
  return _mm_load_si128(reinterpret_cast<const __m128i*>(mask));
}

struct Quad {
  __m128i row[4];
};

// Four by four pixels of four bytes.
Quad transposed(const Quad& q) {
  const __m128i a = _mm_unpacklo_epi32(q.row[0], q.row[1]), b = _mm_unpackhi_epi32(q.row[0], q.row[1]);
  const __m128i c = _mm_unpacklo_epi32(q.row[2], q.row[3]), d = _mm_unpackhi_epi32(q.row[2], q.row[3]);
  return {{_mm_unpacklo_epi64(a, c), _mm_unpackhi_epi64(a, c), _mm_unpacklo_epi64(b, d), _mm_unpackhi_epi64(b, d)}};
}

const Ipp8u* pixelAt(const Ipp8u* p, int step, int x, int y, int channels) {
  return p + static_cast<std::ptrdiff_t>(y) * step + static_cast<std::ptrdiff_t>(x) * channels;
}

Ipp8u* pixelAt(Ipp8u* p, int step, int x, int y, int channels) {
  return p + static_cast<std::ptrdiff_t>(y) * step + static_cast<std::ptrdiff_t>(x) * channels;
}

void transposeBlockC1(const Ipp8u* src, int srcStep, Ipp8u* dst, int dstStep) {
  __m128i r[8], t[4], u[4];
  for (int y = 0; y < 8; ++y) r[y] = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(pixelAt(src, srcStep, 0, y, 1)));
  for (int i = 0; i < 4; ++i) t[i] = _mm_unpacklo_epi8(r[2 * i], r[2 * i + 1]);
  for (int i = 0; i < 2; ++i) {
    u[i] = _mm_unpacklo_epi16(t[2 * i], t[2 * i + 1]);
    u[i + 2] = _mm_unpackhi_epi16(t[2 * i], t[2 * i + 1]);
  }
  const __m128i pairs[4] = {_mm_unpacklo_epi32(u[0], u[1]), _mm_unpackhi_epi32(u[0], u[1]),
                            _mm_unpacklo_epi32(u[2], u[3]), _mm_unpackhi_epi32(u[2], u[3])};
  for (int i = 0; i < 4; ++i) {
    _mm_storel_epi64(reinterpret_cast<__m128i*>(pixelAt(dst, dstStep, 0, 2 * i, 1)), pairs[i]);
    _mm_storel_epi64(reinterpret_cast<__m128i*>(pixelAt(dst, dstStep, 0, 2 * i + 1, 1)),
                     _mm_unpackhi_epi64(pairs[i], pairs[i]));
  }
}

void transposeBlockC3(const Ipp8u* src, int srcStep, Ipp8u* dst, int dstStep) {
  Quad q;
  for (int y = 0; y < 4; ++y) q.row[y] = _mm_shuffle_epi8(load12(pixelAt(src, srcStep, 0, y, 3)), spread());
  q = transposed(q);
  for (int y = 0; y < 4; ++y) store12(pixelAt(dst, dstStep, 0, y, 3), _mm_shuffle_epi8(q.row[y], gather()));
}

// Whole blocks, then the columns to their right and the rows below by the portable loop.
template <int channels, int side>
void transposeTile(const Ipp8u* src, int srcStep, Ipp8u* dst, int dstStep, IppiSize size, TransposeTile plain,
                   void (*block)(const Ipp8u*, int, Ipp8u*, int)) {
  const int width = size.width - size.width % side, height = size.height - size.height % side;
  for (int y = 0; y < height; y += side) {
    for (int x = 0; x < width; x += side) {
      block(pixelAt(src, srcStep, x, y, channels), srcStep, pixelAt(dst, dstStep, y, x, channels), dstStep);
    }
  }
  plain(pixelAt(src, srcStep, width, 0, channels), srcStep, pixelAt(dst, dstStep, 0, width, channels), dstStep,
        {size.width - width, height});
  plain(pixelAt(src, srcStep, 0, height, channels), srcStep, pixelAt(dst, dstStep, height, 0, channels), dstStep,
        {size.width, size.height - height});
}

// Pairs of 16-bit weights as _mm_madd_epi16 wants them.
__m128i weightPair(int low, int high) { return _mm_set1_epi32(low | high << 16); }

__m128i packGray(const __m128i* sums) {
  const __m128i low = _mm_packs_epi32(_mm_srli_epi32(sums[0], 12), _mm_srli_epi32(sums[1], 12));
  const __m128i high = _mm_packs_epi32(_mm_srli_epi32(sums[2], 12), _mm_srli_epi32(sums[3], 12));
  return _mm_packus_epi16(low, high);
}

// mul(u, v) of the portable level on sixteen-bit lanes: (t + (t >> 8) + 1) >> 8 is (t + 1) * 257 >> 16 for
// every product t of two bytes.
__m128i mul16(__m128i u, __m128i v) {
  const __m128i t = _mm_mullo_epi16(u, v);
  return _mm_mulhi_epu16(_mm_add_epi16(t, _mm_set1_epi16(1)), _mm_set1_epi16(257));
}

// Both products of a channel and their sum, at most 510, before bytes saturate.
__m128i blend16(__m128i factorA, __m128i a, __m128i rest, __m128i factorB, __m128i b) {
  return _mm_add_epi16(mul16(factorA, a), mul16(rest, mul16(factorB, b)));
}

__m128i low16(__m128i bytes) { return _mm_unpacklo_epi8(bytes, _mm_setzero_si128()); }
__m128i high16(__m128i bytes) { return _mm_unpackhi_epi8(bytes, _mm_setzero_si128()); }

// Alpha takes part as a fourth channel whose own factor is 255, which multiplies exactly.
__m128i over(__m128i a, __m128i b) {
  const __m128i toAll = _mm_setr_epi8(3, 3, 3, 3, 7, 7, 7, 7, 11, 11, 11, 11, 15, 15, 15, 15);
  const __m128i alphaA = _mm_shuffle_epi8(a, toAll), alphaB = _mm_shuffle_epi8(b, toAll);
  const __m128i rest = _mm_xor_si128(alphaA, _mm_set1_epi8(-1));
  const __m128i factorA = _mm_or_si128(alphaA, alphaMask()), factorB = _mm_or_si128(alphaB, alphaMask());
  return _mm_packus_epi16(blend16(low16(factorA), low16(a), low16(rest), low16(factorB), low16(b)),
                          blend16(high16(factorA), high16(a), high16(rest), high16(factorB), high16(b)));
}

}  // namespace

namespace pixel_sse41 {

void copyAC4(const Ipp8u* src, Ipp8u* dst, std::size_t count) {
  std::size_t i = 0;
  for (; i + 4 <= count; i += 4) store(dst + 4 * i, withAlphaOf(load(src + 4 * i), load(dst + 4 * i)));
  pixel_base::copyAC4(src + 4 * i, dst + 4 * i, count - i);
}

void copyAC4C3(const Ipp8u* src, Ipp8u* dst, std::size_t count) {
  std::size_t i = 0;
  for (; i + 16 <= count; i += 16) {
    const Ipp8u* from = src + 4 * i;
    Ipp8u* to = dst + 3 * i;
    const __m128i a = _mm_shuffle_epi8(load(from), gather()), b = _mm_shuffle_epi8(load(from + 16), gather());
    const __m128i c = _mm_shuffle_epi8(load(from + 32), gather()), d = _mm_shuffle_epi8(load(from + 48), gather());
    store(to, _mm_or_si128(a, _mm_slli_si128(b, 12)));
    store(to + 16, _mm_or_si128(_mm_srli_si128(b, 4), _mm_slli_si128(c, 8)));
    store(to + 32, _mm_or_si128(_mm_srli_si128(c, 8), _mm_slli_si128(d, 4)));
  }
  pixel_base::copyAC4C3(src + 4 * i, dst + 3 * i, count - i);
}

void copyC3AC4(const Ipp8u* src, Ipp8u* dst, std::size_t count) {
  std::size_t i = 0;
  for (; i + 16 <= count; i += 16) {
    const FourQuads quads = loadQuads(src + 3 * i);
    for (int k = 0; k < 4; ++k) {
      Ipp8u* to = dst + 4 * i + 16 * k;
      store(to, withAlphaOf(_mm_shuffle_epi8(quads.quad[k], spread()), load(to)));
    }
  }
  pixel_base::copyC3AC4(src + 3 * i, dst + 4 * i, count - i);
}

// The row ends at the channel of its last pixel, so a whole vector needs one pixel more behind it.
void copyC1C4(const Ipp8u* src, Ipp8u* dst, std::size_t count) {
  const __m128i others = _mm_set1_epi32(static_cast<int>(0xffffff00u));
  std::size_t i = 0;
  for (; i + 4 < count; i += 4) {
    int four;
    std::memcpy(&four, src + i, 4);
    const __m128i kept = _mm_and_si128(others, load(dst + 4 * i));
    store(dst + 4 * i, _mm_or_si128(kept, _mm_cvtepu8_epi32(_mm_cvtsi32_si128(four))));
  }
  pixel_base::copyC1C4(src + i, dst + 4 * i, count - i);
}

void replicateC3(const Ipp8u* src, Ipp8u* dst, std::size_t count) {
  const __m128i first = _mm_setr_epi8(0, 0, 0, 1, 1, 1, 2, 2, 2, 3, 3, 3, 4, 4, 4, 5);
  const __m128i second = _mm_setr_epi8(5, 5, 6, 6, 6, 7, 7, 7, 8, 8, 8, 9, 9, 9, 10, 10);
  const __m128i third = _mm_setr_epi8(10, 11, 11, 11, 12, 12, 12, 13, 13, 13, 14, 14, 14, 15, 15, 15);
  std::size_t i = 0;
  for (; i + 16 <= count; i += 16) {
    const __m128i v = load(src + i);
    store(dst + 3 * i, _mm_shuffle_epi8(v, first));
    store(dst + 3 * i + 16, _mm_shuffle_epi8(v, second));
    store(dst + 3 * i + 32, _mm_shuffle_epi8(v, third));
  }
  pixel_base::replicateC3(src + i, dst + 3 * i, count - i);
}

void replicateC4(const Ipp8u* src, Ipp8u* dst, std::size_t count) {
  std::size_t i = 0;
  for (; i + 16 <= count; i += 16) {
    const __m128i v = load(src + i), low = _mm_unpacklo_epi8(v, v), high = _mm_unpackhi_epi8(v, v);
    store(dst + 4 * i, _mm_unpacklo_epi16(low, low));
    store(dst + 4 * i + 16, _mm_unpackhi_epi16(low, low));
    store(dst + 4 * i + 32, _mm_unpacklo_epi16(high, high));
    store(dst + 4 * i + 48, _mm_unpackhi_epi16(high, high));
  }
  pixel_base::replicateC4(src + i, dst + 4 * i, count - i);
}

// See copyC1C4.
void setC4C(Ipp8u value, Ipp8u* dst, std::size_t count) {
  const __m128i others = _mm_set1_epi32(static_cast<int>(0xffffff00u)), values = _mm_set1_epi32(value);
  std::size_t i = 0;
  for (; i + 4 < count; i += 4) store(dst + 4 * i, _mm_or_si128(_mm_and_si128(others, load(dst + 4 * i)), values));
  pixel_base::setC4C(value, dst + 4 * i, count - i);
}

// Five pixels and one byte of the sixth, which is put down as it was and done in the next round.
void swapC3(const Ipp8u* src, Ipp8u* dst, std::size_t count, const int* order) {
  const __m128i mask = swapMask(order, 3, 5);
  std::size_t i = 0;
  for (; i + 6 <= count; i += 5) store(dst + 3 * i, _mm_shuffle_epi8(load(src + 3 * i), mask));
  pixel_base::swapC3(src + 3 * i, dst + 3 * i, count - i, order);
}

void swapC4(const Ipp8u* src, Ipp8u* dst, std::size_t count, const int* order) {
  const __m128i mask = swapMask(order, 4, 4);
  std::size_t i = 0;
  for (; i + 4 <= count; i += 4) store(dst + 4 * i, _mm_shuffle_epi8(load(src + 4 * i), mask));
  pixel_base::swapC4(src + 4 * i, dst + 4 * i, count - i, order);
}

void exchangeAC4(Ipp8u* a, Ipp8u* b, std::size_t count) {
  std::size_t i = 0;
  for (; i + 4 <= count; i += 4) {
    const __m128i va = load(a + 4 * i), vb = load(b + 4 * i);
    store(a + 4 * i, withAlphaOf(vb, va));
    store(b + 4 * i, withAlphaOf(va, vb));
  }
  pixel_base::exchangeAC4(a + 4 * i, b + 4 * i, count - i);
}

void reverseC1(const Ipp8u* src, Ipp8u* dst, std::size_t count) {
  const __m128i turn = _mm_setr_epi8(15, 14, 13, 12, 11, 10, 9, 8, 7, 6, 5, 4, 3, 2, 1, 0);
  std::size_t i = 0;
  for (; i + 16 <= count; i += 16) store(dst + i, _mm_shuffle_epi8(load(src + count - i - 16), turn));
  pixel_base::reverseC1(src, dst + i, count - i);
}

// The last byte of each store belongs to the next pixel, which the next round or the remainder writes.
void reverseC3(const Ipp8u* src, Ipp8u* dst, std::size_t count) {
  const __m128i turn = _mm_setr_epi8(13, 14, 15, 10, 11, 12, 7, 8, 9, 4, 5, 6, 1, 2, 3, -1);
  std::size_t i = 0;
  for (; i + 6 <= count; i += 5) store(dst + 3 * i, _mm_shuffle_epi8(load(src + 3 * (count - i) - 16), turn));
  pixel_base::reverseC3(src, dst + 3 * i, count - i);
}

void reverseC4(const Ipp8u* src, Ipp8u* dst, std::size_t count) {
  std::size_t i = 0;
  for (; i + 4 <= count; i += 4) store(dst + 4 * i, _mm_shuffle_epi32(load(src + 4 * (count - i) - 16), 0x1b));
  pixel_base::reverseC4(src, dst + 4 * i, count - i);
}

void transposeC1(const Ipp8u* src, int srcStep, Ipp8u* dst, int dstStep, IppiSize size) {
  transposeTile<1, 8>(src, srcStep, dst, dstStep, size, pixel_base::transposeC1, transposeBlockC1);
}

void transposeC3(const Ipp8u* src, int srcStep, Ipp8u* dst, int dstStep, IppiSize size) {
  transposeTile<3, 4>(src, srcStep, dst, dstStep, size, pixel_base::transposeC3, transposeBlockC3);
}

void grayC3(const Ipp8u* src, Ipp8u* dst, std::size_t count, const int* weights) {
  const __m128i take01 = _mm_setr_epi8(0, -1, 1, -1, 3, -1, 4, -1, 6, -1, 7, -1, 9, -1, 10, -1);
  const __m128i take2 = _mm_setr_epi8(2, -1, -1, -1, 5, -1, -1, -1, 8, -1, -1, -1, 11, -1, -1, -1);
  const __m128i w01 = weightPair(weights[0], weights[1]), w2 = weightPair(weights[2], 0);
  std::size_t i = 0;
  for (; i + 16 <= count; i += 16) {
    const FourQuads quads = loadQuads(src + 3 * i);
    __m128i sums[4];
    for (int k = 0; k < 4; ++k) {
      sums[k] = _mm_add_epi32(_mm_madd_epi16(_mm_shuffle_epi8(quads.quad[k], take01), w01),
                              _mm_madd_epi16(_mm_shuffle_epi8(quads.quad[k], take2), w2));
    }
    store(dst + i, packGray(sums));
  }
  pixel_base::grayC3(src + 3 * i, dst + i, count - i, weights);
}

void grayAC4(const Ipp8u* src, Ipp8u* dst, std::size_t count, const int* weights) {
  const __m128i even = _mm_set1_epi16(0x00ff);
  const __m128i w02 = weightPair(weights[0], weights[2]), w1 = weightPair(weights[1], 0);
  std::size_t i = 0;
  for (; i + 16 <= count; i += 16) {
    __m128i sums[4];
    for (int k = 0; k < 4; ++k) {
      const __m128i v = load(src + 4 * i + 16 * k);
      sums[k] = _mm_add_epi32(_mm_madd_epi16(_mm_and_si128(v, even), w02), _mm_madd_epi16(_mm_srli_epi16(v, 8), w1));
    }
    store(dst + i, packGray(sums));
  }
  pixel_base::grayAC4(src + 4 * i, dst + i, count - i, weights);
}

void alphaOver(const Ipp8u* a, const Ipp8u* b, Ipp8u* dst, std::size_t count) {
  std::size_t i = 0;
  for (; i + 4 <= count; i += 4) store(dst + 4 * i, over(load(a + 4 * i), load(b + 4 * i)));
  pixel_base::alphaOver(a + 4 * i, b + 4 * i, dst + 4 * i, count - i);
}

}  // namespace pixel_sse41

void fillPixelKernelsSse41(PixelKernels& table) {
  table.copyAC4 = pixel_sse41::copyAC4;
  table.copyAC4C3 = pixel_sse41::copyAC4C3;
  table.copyC3AC4 = pixel_sse41::copyC3AC4;
  table.copyC1C4 = pixel_sse41::copyC1C4;
  table.replicateC3 = pixel_sse41::replicateC3;
  table.replicateC4 = pixel_sse41::replicateC4;
  table.setC4C = pixel_sse41::setC4C;
  table.swapC3 = pixel_sse41::swapC3;
  table.swapC4 = pixel_sse41::swapC4;
  table.exchangeAC4 = pixel_sse41::exchangeAC4;
  table.reverseC1 = pixel_sse41::reverseC1;
  table.reverseC3 = pixel_sse41::reverseC3;
  table.reverseC4 = pixel_sse41::reverseC4;
  table.transposeC1 = pixel_sse41::transposeC1;
  table.transposeC3 = pixel_sse41::transposeC3;
  table.grayC3 = pixel_sse41::grayC3;
  table.grayAC4 = pixel_sse41::grayAC4;
  table.alphaOver = pixel_sse41::alphaOver;
}
