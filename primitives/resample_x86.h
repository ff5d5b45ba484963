// 128-bit kernels for SSE4.1, which the AVX2 level compiles again for itself where wider vectors gain nothing.
// Internal linkage, as in resample_loops.h.
#pragma once

#include <smmintrin.h>

#include <cstring>

#include "primitives/resample_kernels.h"
#include "primitives/resample_loops.h"

namespace {

inline __m128i load16(const void* p) { return _mm_loadu_si128(static_cast<const __m128i*>(p)); }
inline __m128i load8(const void* p) { return _mm_loadl_epi64(static_cast<const __m128i*>(p)); }

inline int load4(const void* p) {
  int value;
  std::memcpy(&value, p, sizeof(value));
  return value;
}

// Stores four pixels, given as one pixel of 32-bit channels a register.
template <int kChannels>
inline void storeFour(__m128i a, __m128i b, __m128i c, __m128i d, Ipp8u* out) {
  const __m128i bytes = _mm_packus_epi16(_mm_packus_epi32(a, b), _mm_packus_epi32(c, d));
  if constexpr (kChannels == 4) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out), bytes);
  } else {
    const __m128i tight =
        _mm_shuffle_epi8(bytes, _mm_setr_epi8(0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1));
    _mm_storel_epi64(reinterpret_cast<__m128i*>(out), tight);
    const int rest = _mm_extract_epi32(tight, 2);
    std::memcpy(out + 8, &rest, sizeof(rest));
  }
}

// The biased column means times the negated weights sum to 2^30 minus the wanted sum.
inline __m128i areaRound(__m128i sum) {
  const __m128i base = _mm_set1_epi32((1 << 30) + (1 << (kAreaWeightBits + 7)));
  return _mm_srli_epi32(_mm_sub_epi32(base, sum), kAreaWeightBits + 8);
}

// Column means use all 16 bits; multiply-add takes signed numbers.
inline __m128i areaBias(__m128i columns) { return _mm_xor_si128(columns, _mm_set1_epi16(INT16_MIN)); }

template <int kTaps>
inline __m128i areaFourSums(const std::uint16_t* columns, const std::int32_t* first, const std::int16_t* weights) {
  if constexpr (kTaps == 4) {
    const __m128i a = _mm_unpacklo_epi64(load8(columns + first[0]), load8(columns + first[1]));
    const __m128i b = _mm_unpacklo_epi64(load8(columns + first[2]), load8(columns + first[3]));
    return _mm_hadd_epi32(_mm_madd_epi16(areaBias(a), load16(weights)),
                          _mm_madd_epi16(areaBias(b), load16(weights + 8)));
  } else {
    __m128i sums[4];
    for (int i = 0; i < 4; ++i) {
      sums[i] = _mm_madd_epi16(areaBias(load16(columns + first[i])), load16(weights + 8 * i));
    }
    return _mm_hadd_epi32(_mm_hadd_epi32(sums[0], sums[1]), _mm_hadd_epi32(sums[2], sums[3]));
  }
}

template <int kTaps>
void areaNarrowGray(const std::uint16_t* columns, const std::int32_t* first, const std::int16_t* weights, Ipp8u* out,
                    int pixels) {
  int i = 0;
  for (; i + 8 <= pixels; i += 8, weights += 8 * kTaps) {
    const __m128i low = areaRound(areaFourSums<kTaps>(columns, first + i, weights));
    const __m128i high = areaRound(areaFourSums<kTaps>(columns, first + i + 4, weights + 4 * kTaps));
    const __m128i words = _mm_packus_epi32(low, high);
    _mm_storel_epi64(reinterpret_cast<__m128i*>(out + i), _mm_packus_epi16(words, words));
  }
  for (; i < pixels; ++i, weights += kTaps) areaNarrowPixel<1>(columns + first[i], weights, kTaps, out + i);
}

void areaNarrow1(const std::uint16_t* columns, const std::int32_t* first, const std::int16_t* weights, int taps,
                 Ipp8u* out, int pixels) {
  (taps == 4 ? areaNarrowGray<4> : areaNarrowGray<8>)(columns, first, weights, out, pixels);
}

// One pixel: two taps a step, the channels of both interleaved.
template <int kChannels>
inline __m128i areaPixelSum(const std::uint16_t* from, const std::int16_t* weights, int taps) {
  const __m128i pairs = kChannels == 4 ? _mm_setr_epi8(0, 1, 8, 9, 2, 3, 10, 11, 4, 5, 12, 13, 6, 7, 14, 15)
                                       : _mm_setr_epi8(0, 1, 6, 7, 2, 3, 8, 9, 4, 5, 10, 11, -1, -1, -1, -1);
  __m128i sum = _mm_setzero_si128();
  for (int t = 0; t < taps; t += 2) {
    const __m128i columns = areaBias(_mm_shuffle_epi8(load16(from + t * kChannels), pairs));
    sum = _mm_add_epi32(sum, _mm_madd_epi16(columns, _mm_set1_epi32(load4(weights + t))));
  }
  return areaRound(sum);
}

template <int kChannels>
void areaNarrowColor(const std::uint16_t* columns, const std::int32_t* first, const std::int16_t* weights, int taps,
                     Ipp8u* out, int pixels) {
  int i = 0;
  for (; i + 4 <= pixels; i += 4, out += 4 * kChannels) {
    __m128i four[4];
    for (int k = 0; k < 4; ++k, weights += taps) {
      four[k] = areaPixelSum<kChannels>(columns + static_cast<std::ptrdiff_t>(first[i + k]) * kChannels, weights, taps);
    }
    storeFour<kChannels>(four[0], four[1], four[2], four[3], out);
  }
  for (; i < pixels; ++i, weights += taps, out += kChannels) {
    areaNarrowPixel<kChannels>(columns + static_cast<std::ptrdiff_t>(first[i]) * kChannels, weights, taps, out);
  }
}

inline std::uint32_t sumColumns(const std::uint16_t* from, int count) {
  alignas(16) static constexpr std::uint16_t kKeep[16] = {0xFFFF, 0xFFFF, 0xFFFF, 0xFFFF,
                                                          0xFFFF, 0xFFFF, 0xFFFF, 0xFFFF};
  const __m128i ones = _mm_set1_epi16(1);
  __m128i sum = _mm_setzero_si128();
  int t = 0;
  for (; t + 8 <= count; t += 8) sum = _mm_add_epi32(sum, _mm_madd_epi16(areaBias(load16(from + t)), ones));
  const __m128i rest = _mm_and_si128(areaBias(load16(from + t)), load16(kKeep + 8 - (count - t)));
  sum = _mm_add_epi32(sum, _mm_madd_epi16(rest, ones));
  sum = _mm_add_epi32(sum, _mm_shuffle_epi32(sum, 0x4E));
  sum = _mm_add_epi32(sum, _mm_shuffle_epi32(sum, 0xB1));
  return static_cast<std::uint32_t>(_mm_cvtsi128_si32(sum)) + 32768U * static_cast<std::uint32_t>(count);
}

void areaWide1(const std::uint16_t* columns, const AreaSpan* spans, Ipp8u* out, int pixels) {
  for (int i = 0; i < pixels; ++i) {
    const AreaSpan& span = spans[i];
    const std::uint32_t full = sumColumns(columns + span.first + 1, span.full);
    const float sum =
        (static_cast<float>(columns[span.first]) * span.firstWeight + static_cast<float>(full) * span.fullWeight) +
        static_cast<float>(columns[span.last]) * span.lastWeight;
    out[i] = static_cast<Ipp8u>(static_cast<int>(sum + 0.5F));
  }
}

inline __m128 columnFloats(const std::uint16_t* from) { return _mm_cvtepi32_ps(_mm_cvtepu16_epi32(load8(from))); }

template <int kChannels>
inline __m128i areaWideSum(const std::uint16_t* columns, const AreaSpan& span) {
  const std::uint16_t* from = columns + static_cast<std::ptrdiff_t>(span.first) * kChannels;
  __m128i even = _mm_setzero_si128(), odd = even;
  int t = 1;
  for (; t < span.full; t += 2) {
    even = _mm_add_epi32(even, _mm_cvtepu16_epi32(load8(from + t * kChannels)));
    odd = _mm_add_epi32(odd, _mm_cvtepu16_epi32(load8(from + (t + 1) * kChannels)));
  }
  if (t == span.full) even = _mm_add_epi32(even, _mm_cvtepu16_epi32(load8(from + t * kChannels)));
  const __m128 full = _mm_cvtepi32_ps(_mm_add_epi32(even, odd));
  const __m128 last = columnFloats(columns + static_cast<std::ptrdiff_t>(span.last) * kChannels);
  __m128 sum = _mm_add_ps(_mm_mul_ps(columnFloats(from), _mm_set1_ps(span.firstWeight)),
                          _mm_mul_ps(full, _mm_set1_ps(span.fullWeight)));
  sum = _mm_add_ps(sum, _mm_mul_ps(last, _mm_set1_ps(span.lastWeight)));
  return _mm_cvttps_epi32(_mm_add_ps(sum, _mm_set1_ps(0.5F)));
}

template <int kChannels>
void areaWideColor(const std::uint16_t* columns, const AreaSpan* spans, Ipp8u* out, int pixels) {
  // Longer sums would not fit the signed numbers that are converted to float.
  constexpr int kMaxFull = INT32_MAX / UINT16_MAX;
  int i = 0;
  for (; i + 4 <= pixels && spans[i].full < kMaxFull; i += 4, out += 4 * kChannels) {
    storeFour<kChannels>(areaWideSum<kChannels>(columns, spans[i]), areaWideSum<kChannels>(columns, spans[i + 1]),
                         areaWideSum<kChannels>(columns, spans[i + 2]), areaWideSum<kChannels>(columns, spans[i + 3]),
                         out);
  }
  for (; i < pixels; ++i, out += kChannels) areaWidePixel<kChannels>(columns, spans[i], out);
}

// Four outputs: their taps are transposed, so that each lane adds its taps in order.
void lanczosRow1(const float* row, const std::int32_t* first, const float* weights, float* out, int pixels) {
  int i = 0;
  for (; i + 4 <= pixels; i += 4) {
    __m128 taps[8], factors[8];
    for (int k = 0; k < 4; ++k, weights += kLanczosTaps) {
      taps[k] = _mm_loadu_ps(row + first[i + k]);
      taps[4 + k] = _mm_castsi128_ps(load8(row + first[i + k] + 4));
      factors[k] = _mm_loadu_ps(weights);
      factors[4 + k] = _mm_castsi128_ps(load8(weights + 4));
    }
    _MM_TRANSPOSE4_PS(taps[0], taps[1], taps[2], taps[3]);
    _MM_TRANSPOSE4_PS(taps[4], taps[5], taps[6], taps[7]);
    _MM_TRANSPOSE4_PS(factors[0], factors[1], factors[2], factors[3]);
    _MM_TRANSPOSE4_PS(factors[4], factors[5], factors[6], factors[7]);
    __m128 sum = _mm_mul_ps(taps[0], factors[0]);
    for (int t = 1; t < kLanczosTaps; ++t) sum = _mm_add_ps(sum, _mm_mul_ps(taps[t], factors[t]));
    _mm_storeu_ps(out + i, sum);
  }
  for (; i < pixels; ++i, weights += kLanczosTaps) lanczosPixel<1>(row + first[i], weights, out + i);
}

// Three channels are computed as four; the last pixel apart, because its fourth would lie beyond the row.
template <int kChannels>
void lanczosRowColor(const float* row, const std::int32_t* first, const float* weights, float* out, int pixels) {
  for (int i = 0; i + 1 < pixels; ++i, weights += kLanczosTaps, out += kChannels) {
    const float* from = row + static_cast<std::ptrdiff_t>(first[i]) * kChannels;
    __m128 sum = _mm_mul_ps(_mm_loadu_ps(from), _mm_set1_ps(weights[0]));
    for (int t = 1; t < kLanczosTaps; ++t) {
      sum = _mm_add_ps(sum, _mm_mul_ps(_mm_loadu_ps(from + t * kChannels), _mm_set1_ps(weights[t])));
    }
    _mm_storeu_ps(out, sum);
  }
  lanczosPixel<kChannels>(row + static_cast<std::ptrdiff_t>(first[pixels - 1]) * kChannels, weights, out);
}

inline __m128 lanczosFour(const float* const rows[kLanczosTaps], const __m128 factors[kLanczosTaps], int k) {
  __m128 sum = _mm_mul_ps(_mm_loadu_ps(rows[0] + k), factors[0]);
  for (int t = 1; t < kLanczosTaps; ++t) sum = _mm_add_ps(sum, _mm_mul_ps(_mm_loadu_ps(rows[t] + k), factors[t]));
  return sum;
}

inline __m128i lanczosRound(__m128 value) {
  value = _mm_min_ps(_mm_max_ps(value, _mm_setzero_ps()), _mm_set1_ps(255.0F));
  return _mm_cvttps_epi32(_mm_add_ps(value, _mm_set1_ps(0.5F)));
}

void lanczosColumns8uFour(const float* const rows[kLanczosTaps], const float weights[kLanczosTaps], Ipp8u* out,
                          int samples) {
  // Local copies: the compiler must assume that bytes written through `out` change the tables.
  const float* const from[kLanczosTaps] = {rows[0], rows[1], rows[2], rows[3], rows[4], rows[5]};
  __m128 factors[kLanczosTaps];
  for (int t = 0; t < kLanczosTaps; ++t) factors[t] = _mm_set1_ps(weights[t]);
  int k = 0;
  for (; k + 8 <= samples; k += 8) {
    const __m128i words =
        _mm_packus_epi32(lanczosRound(lanczosFour(from, factors, k)), lanczosRound(lanczosFour(from, factors, k + 4)));
    _mm_storel_epi64(reinterpret_cast<__m128i*>(out + k), _mm_packus_epi16(words, words));
  }
  for (; k < samples; ++k) out[k] = lanczosByte(lanczosSample(rows, weights, k));
}

// The weight pair of a fraction in 16.16: its complement below, itself above.
inline __m128i rotateWeights(__m128i fraction) {
  const __m128i part = _mm_srli_epi32(fraction, 32 - kRotateWeightBits);
  const __m128i pair = _mm_sub_epi32(_mm_slli_epi32(part, 16), part);
  return _mm_add_epi32(pair, _mm_set1_epi32(1 << kRotateWeightBits));
}

// Both directions of the interpolation from pairs of neighbours, one result in each 32-bit lane.
inline __m128i rotateMix(__m128i top, __m128i bottom, __m128i across, __m128i down) {
  const __m128i upper = _mm_srli_epi32(_mm_madd_epi16(top, across), 7);
  const __m128i lower = _mm_slli_epi32(_mm_srli_epi32(_mm_madd_epi16(bottom, across), 7), 16);
  const __m128i sum = _mm_madd_epi16(_mm_or_si128(upper, lower), down);
  return _mm_srli_epi32(_mm_add_epi32(sum, _mm_set1_epi32(1 << 20)), 21);
}

// Positions of four neighbouring destination pixels.
class RotateFour {
 public:
  RotateFour(FixedPoint from, FixedPoint move)
      : x01_(_mm_set_epi64x(from.x + move.x, from.x)),
        x23_(_mm_set_epi64x(from.x + 3 * move.x, from.x + 2 * move.x)),
        y01_(_mm_set_epi64x(from.y + move.y, from.y)),
        y23_(_mm_set_epi64x(from.y + 3 * move.y, from.y + 2 * move.y)),
        xMove_(_mm_set1_epi64x(4 * move.x)),
        yMove_(_mm_set1_epi64x(4 * move.y)) {}

  __m128i offsets(__m128i step, __m128i pixelBytes) const {
    return _mm_add_epi32(_mm_mullo_epi32(odd(y01_, y23_), step), _mm_mullo_epi32(odd(x01_, x23_), pixelBytes));
  }
  __m128i across() const { return rotateWeights(even(x01_, x23_)); }
  __m128i down() const { return rotateWeights(even(y01_, y23_)); }

  void advance() {
    x01_ = _mm_add_epi64(x01_, xMove_);
    x23_ = _mm_add_epi64(x23_, xMove_);
    y01_ = _mm_add_epi64(y01_, yMove_);
    y23_ = _mm_add_epi64(y23_, yMove_);
  }

 private:
  static __m128i even(__m128i a, __m128i b) {
    return _mm_castps_si128(_mm_shuffle_ps(_mm_castsi128_ps(a), _mm_castsi128_ps(b), 0x88));
  }
  static __m128i odd(__m128i a, __m128i b) {
    return _mm_castps_si128(_mm_shuffle_ps(_mm_castsi128_ps(a), _mm_castsi128_ps(b), 0xDD));
  }

  __m128i x01_, x23_, y01_, y23_, xMove_, yMove_;
};

inline FixedPoint moved(FixedPoint from, FixedPoint move, int steps) {
  return {from.x + steps * move.x, from.y + steps * move.y};
}

// Four neighbours' left and right values, widened, from four bytes each.
inline __m128i rotateGather(const Ipp8u* src, const std::int32_t offsets[4]) {
  __m128i bytes = _mm_cvtsi32_si128(load4(src + offsets[0]));
  bytes = _mm_insert_epi32(bytes, load4(src + offsets[1]), 1);
  bytes = _mm_insert_epi32(bytes, load4(src + offsets[2]), 2);
  bytes = _mm_insert_epi32(bytes, load4(src + offsets[3]), 3);
  return _mm_shuffle_epi8(bytes, _mm_setr_epi8(0, -1, 1, -1, 4, -1, 5, -1, 8, -1, 9, -1, 12, -1, 13, -1));
}

void rotateSpan1(const Ipp8u* src, std::ptrdiff_t step, FixedPoint from, FixedPoint move, Ipp8u* out, int pixels) {
  RotateFour four(from, move);
  const __m128i steps = _mm_set1_epi32(static_cast<int>(step)), one = _mm_set1_epi32(1);
  int i = 0;
  for (; i + 4 <= pixels; i += 4, four.advance()) {
    alignas(16) std::int32_t offsets[4];
    _mm_store_si128(reinterpret_cast<__m128i*>(offsets), four.offsets(steps, one));
    const __m128i values =
        rotateMix(rotateGather(src, offsets), rotateGather(src + step, offsets), four.across(), four.down());
    const __m128i words = _mm_packus_epi32(values, values);
    const int bytes = _mm_cvtsi128_si32(_mm_packus_epi16(words, words));
    std::memcpy(out + i, &bytes, sizeof(bytes));
  }
  rotatePixels<1>(src, step, moved(from, move, i), move, out + i, pixels - i);
}

// The two neighbours' channels interleaved and widened, from the first bytes of a register.
template <int kChannels>
inline __m128i rotatePairs(__m128i bytes) {
  const __m128i pairs = kChannels == 4 ? _mm_setr_epi8(0, -1, 4, -1, 1, -1, 5, -1, 2, -1, 6, -1, 3, -1, 7, -1)
                                       : _mm_setr_epi8(0, -1, 3, -1, 1, -1, 4, -1, 2, -1, 5, -1, -1, -1, -1, -1);
  return _mm_shuffle_epi8(bytes, pairs);
}

template <int kChannels>
void rotateSpanColor(const Ipp8u* src, std::ptrdiff_t step, FixedPoint from, FixedPoint move, Ipp8u* out, int pixels) {
  RotateFour four(from, move);
  const __m128i steps = _mm_set1_epi32(static_cast<int>(step)), pixelBytes = _mm_set1_epi32(kChannels);
  int i = 0;
  for (; i + 4 <= pixels; i += 4, four.advance(), out += 4 * kChannels) {
    alignas(16) std::int32_t offsets[4], across[4], down[4];
    _mm_store_si128(reinterpret_cast<__m128i*>(offsets), four.offsets(steps, pixelBytes));
    _mm_store_si128(reinterpret_cast<__m128i*>(across), four.across());
    _mm_store_si128(reinterpret_cast<__m128i*>(down), four.down());
    __m128i values[4];
    for (int k = 0; k < 4; ++k) {
      const Ipp8u* top = src + offsets[k];
      values[k] = rotateMix(rotatePairs<kChannels>(load8(top)), rotatePairs<kChannels>(load8(top + step)),
                            _mm_set1_epi32(across[k]), _mm_set1_epi32(down[k]));
    }
    storeFour<kChannels>(values[0], values[1], values[2], values[3], out);
  }
  rotatePixels<kChannels>(src, step, moved(from, move, i), move, out, pixels - i);
}

inline void fillResample128(ResampleKernels& table) {
  fillResampleLoops(table);
  table.areaNarrow[0] = areaNarrow1;
  table.areaNarrow[1] = areaNarrowColor<3>;
  table.areaNarrow[2] = areaNarrowColor<4>;
  table.areaWide[0] = areaWide1;
  table.areaWide[1] = areaWideColor<3>;
  table.areaWide[2] = areaWideColor<4>;
  table.lanczosRow[0] = lanczosRow1;
  table.lanczosRow[1] = lanczosRowColor<3>;
  table.lanczosRow[2] = lanczosRowColor<4>;
  table.lanczosColumns8u = lanczosColumns8uFour;
  table.rotateSpan[0] = rotateSpan1;
  table.rotateSpan[1] = rotateSpanColor<3>;
  table.rotateSpan[2] = rotateSpanColor<4>;
}

}  // namespace
