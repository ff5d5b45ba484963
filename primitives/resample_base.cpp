// Portable resampling kernels: the reference for the other levels.
#include "primitives/resample_kernels.h"

namespace {

void areaSumRows(const Ipp8u* row, std::ptrdiff_t step, int rows, std::uint16_t* sum, int samples) {
  for (int k = 0; k < samples; ++k) sum[k] = row[k];
  for (int r = 1; r < rows; ++r) {
    row += step;
    for (int k = 0; k < samples; ++k) sum[k] = static_cast<std::uint16_t>(sum[k] + row[k]);
  }
}

template <class Middle>
void mixRows(const Ipp8u* first, const Middle* middle, const Ipp8u* last, const float weights[3], std::uint16_t* out,
             int samples) {
  const float w0 = weights[0], w1 = weights[1], w2 = weights[2];
  for (int k = 0; k < samples; ++k) {
    const float sum =
        (static_cast<float>(first[k]) * w0 + static_cast<float>(middle[k]) * w1) + static_cast<float>(last[k]) * w2;
    out[k] = static_cast<std::uint16_t>(static_cast<int>(sum + 0.5F));
  }
}

template <int kChannels>
void areaNarrow(const std::uint16_t* columns, const std::int32_t* first, const std::int16_t* weights, int taps,
                Ipp8u* out, int pixels) {
  constexpr int kShift = kAreaWeightBits + 8;
  for (int i = 0; i < pixels; ++i, weights += taps, out += kChannels) {
    const std::uint16_t* from = columns + static_cast<std::ptrdiff_t>(first[i]) * kChannels;
    for (int c = 0; c < kChannels; ++c) {
      std::int32_t sum = 1 << (kShift - 1);
      for (int t = 0; t < taps; ++t) sum -= from[t * kChannels + c] * weights[t];
      out[c] = static_cast<Ipp8u>(sum >> kShift);
    }
  }
}

template <int kChannels>
void areaWide(const std::uint16_t* columns, const AreaSpan* spans, Ipp8u* out, int pixels) {
  for (int i = 0; i < pixels; ++i, out += kChannels) {
    const AreaSpan& span = spans[i];
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
}

template <int kChannels>
void lanczosRow(const float* row, const std::int32_t* first, const float* weights, float* out, int pixels) {
  for (int i = 0; i < pixels; ++i, weights += kLanczosTaps, out += kChannels) {
    const float* from = row + static_cast<std::ptrdiff_t>(first[i]) * kChannels;
    for (int c = 0; c < kChannels; ++c) {
      float sum = from[c] * weights[0];
      for (int t = 1; t < kLanczosTaps; ++t) sum += from[t * kChannels + c] * weights[t];
      out[c] = sum;
    }
  }
}

inline float sixRows(const float* const rows[kLanczosTaps], const float weights[kLanczosTaps], int k) {
  float sum = rows[0][k] * weights[0];
  for (int t = 1; t < kLanczosTaps; ++t) sum += rows[t][k] * weights[t];
  return sum;
}

void lanczosColumns8u(const float* const rows[kLanczosTaps], const float weights[kLanczosTaps], Ipp8u* out,
                      int samples) {
  for (int k = 0; k < samples; ++k) {
    float value = sixRows(rows, weights, k);
    value = value > 0.0F ? value : 0.0F;
    value = value < 255.0F ? value : 255.0F;
    out[k] = static_cast<Ipp8u>(static_cast<int>(value + 0.5F));
  }
}

void lanczosColumns32f(const float* const rows[kLanczosTaps], const float weights[kLanczosTaps], float* out,
                       int samples) {
  for (int k = 0; k < samples; ++k) out[k] = sixRows(rows, weights, k);
}

template <int kChannels>
void rotateSpan(const Ipp8u* src, std::ptrdiff_t step, FixedPoint from, FixedPoint move, Ipp8u* out, int pixels) {
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

}  // namespace

void fillResampleKernelsBase(ResampleKernels& table) {
  table.areaSumRows = areaSumRows;
  table.areaMixRows = mixRows<Ipp8u>;
  table.areaMixSums = mixRows<std::uint16_t>;
  table.areaNarrow[0] = areaNarrow<1>;
  table.areaNarrow[1] = areaNarrow<3>;
  table.areaNarrow[2] = areaNarrow<4>;
  table.areaWide[0] = areaWide<1>;
  table.areaWide[1] = areaWide<3>;
  table.areaWide[2] = areaWide<4>;
  table.lanczosRow[0] = lanczosRow<1>;
  table.lanczosRow[1] = lanczosRow<3>;
  table.lanczosRow[2] = lanczosRow<4>;
  table.lanczosColumns8u = lanczosColumns8u;
  table.lanczosColumns32f = lanczosColumns32f;
  table.rotateSpan[0] = rotateSpan<1>;
  table.rotateSpan[1] = rotateSpan<3>;
  table.rotateSpan[2] = rotateSpan<4>;
}
