// Plain loops over samples that the compiler vectorises well for each level, and the formulas that the
// hand-written kernels fall back on for the ends of rows. Everything has internal linkage, so that code compiled
// for one level can't be linked into another.
#pragma once

#include "primitives/resample_kernels.h"

namespace {

// Four rows at a time, because the row of sums costs more traffic than the rows.
void areaSumRows(const Ipp8u* row, std::ptrdiff_t step, int rows, std::uint16_t* sum, int samples) {
  const int odd = rows % 4;
  for (int k = 0; k < samples; ++k) sum[k] = 0;
  for (int r = 0; r < odd; ++r, row += step) {
    for (int k = 0; k < samples; ++k) sum[k] = static_cast<std::uint16_t>(sum[k] + row[k]);
  }
  for (int r = odd; r < rows; r += 4, row += 4 * step) {
    const Ipp8u *a = row, *b = a + step, *c = b + step, *d = c + step;
    for (int k = 0; k < samples; ++k) sum[k] = static_cast<std::uint16_t>(sum[k] + ((a[k] + b[k]) + (c[k] + d[k])));
  }
}

template <class Middle>
void areaMix(const Ipp8u* first, const Middle* middle, const Ipp8u* last, const float weights[3], std::uint16_t* out,
             int samples) {
  const float w0 = weights[0], w1 = weights[1], w2 = weights[2];
  for (int k = 0; k < samples; ++k) {
    const float sum =
        (static_cast<float>(first[k]) * w0 + static_cast<float>(middle[k]) * w1) + static_cast<float>(last[k]) * w2;
    out[k] = static_cast<std::uint16_t>(static_cast<int>(sum + 0.5F));
  }
}

template <int kChannels>
inline void areaNarrowPixel(const std::uint16_t* from, const std::int16_t* weights, int taps, Ipp8u* out) {
  constexpr int kShift = kAreaWeightBits + 8;
  for (int c = 0; c < kChannels; ++c) {
    std::int32_t sum = 1 << (kShift - 1);
    for (int t = 0; t < taps; ++t) sum -= from[t * kChannels + c] * weights[t];
    out[c] = static_cast<Ipp8u>(sum >> kShift);
  }
}

template <int kChannels>
inline void areaWidePixel(const std::uint16_t* columns, const AreaSpan& span, Ipp8u* out) {
  const std::uint16_t* first = columns + static_cast<std::ptrdiff_t>(span.first) * kChannels;
  const std::uint16_t* last = columns + static_cast<std::ptrdiff_t>(span.last) * kChannels;
  std::uint32_t full[kChannels] = {};
  for (int t = 1; t <= span.full; ++t) {
    for (int c = 0; c < kChannels; ++c) full[c] += first[t * kChannels + c];
  }
  for (int c = 0; c < kChannels; ++c) {
    const float sum =
        (static_cast<float>(first[c]) * span.firstWeight + static_cast<float>(full[c]) * span.fullWeight) +
        static_cast<float>(last[c]) * span.lastWeight;
    out[c] = static_cast<Ipp8u>(static_cast<int>(sum + 0.5F));
  }
}

template <int kChannels>
inline void lanczosPixel(const float* from, const float* weights, float* out) {
  for (int c = 0; c < kChannels; ++c) {
    float sum = from[c] * weights[0];
    for (int t = 1; t < kLanczosTaps; ++t) sum += from[t * kChannels + c] * weights[t];
    out[c] = sum;
  }
}

inline float lanczosSample(const float* const rows[kLanczosTaps], const float weights[kLanczosTaps], int k) {
  float sum = rows[0][k] * weights[0];
  for (int t = 1; t < kLanczosTaps; ++t) sum += rows[t][k] * weights[t];
  return sum;
}

inline Ipp8u lanczosByte(float value) {
  value = value > 0.0F ? value : 0.0F;
  value = value < 255.0F ? value : 255.0F;
  return static_cast<Ipp8u>(static_cast<int>(value + 0.5F));
}

void lanczosColumns8u(const float* const rows[kLanczosTaps], const float weights[kLanczosTaps], Ipp8u* out,
                      int samples) {
  for (int k = 0; k < samples; ++k) out[k] = lanczosByte(lanczosSample(rows, weights, k));
}

void lanczosColumns32f(const float* const rows[kLanczosTaps], const float weights[kLanczosTaps], float* out,
                       int samples) {
  for (int k = 0; k < samples; ++k) out[k] = lanczosSample(rows, weights, k);
}

template <int kChannels>
inline void rotatePixels(const Ipp8u* src, std::ptrdiff_t step, FixedPoint from, FixedPoint move, Ipp8u* out,
                         int pixels) {
  constexpr int kOne = 1 << kRotateWeightBits;
  for (int i = 0; i < pixels; ++i, out += kChannels, from.x += move.x, from.y += move.y) {
    const Ipp8u* top = src + (from.y >> 32) * step + (from.x >> 32) * kChannels;
    const Ipp8u* bottom = top + step;
    const int fx = static_cast<int>(static_cast<std::uint32_t>(from.x) >> (32 - kRotateWeightBits));
    const int fy = static_cast<int>(static_cast<std::uint32_t>(from.y) >> (32 - kRotateWeightBits));
    for (int c = 0; c < kChannels; ++c) {
      // 15 bits are kept between the two directions.
      const int upper = (top[c] * (kOne - fx) + top[c + kChannels] * fx) >> 7;
      const int lower = (bottom[c] * (kOne - fx) + bottom[c + kChannels] * fx) >> 7;
      out[c] = static_cast<Ipp8u>((upper * (kOne - fy) + lower * fy + (1 << 20)) >> 21);
    }
  }
}

inline void fillResampleLoops(ResampleKernels& table) {
  table.areaSumRows = areaSumRows;
  table.areaMixRows = areaMix<Ipp8u>;
  table.areaMixSums = areaMix<std::uint16_t>;
  table.lanczosColumns8u = lanczosColumns8u;
  table.lanczosColumns32f = lanczosColumns32f;
}

}  // namespace
