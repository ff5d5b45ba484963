// The formulas of the overlay kernels for one value, on which the vector kernels fall back at the ends of rows.
// Everything has internal linkage, so that code compiled for one level can't be linked into another.
#pragma once

#include <cmath>

#include "primitives/overlay_kernels.h"

namespace {

// Means and ratios below it count as this much, so that black divided by black is 1.
constexpr float kLeastMean = 1e-5F;

inline float atLeast(float value) { return value < kLeastMean && value > -kLeastMean ? kLeastMean : value; }

// 0xff in the bytes of a pixel that `channels` chooses.
inline int channelMask(unsigned channels) {
  unsigned mask = 0;
  for (unsigned c = 0; c < 3; ++c) mask |= (channels >> c & 1) * (0xffU << 8 * c);
  return static_cast<int>(mask);
}

// `k` is the index of the value in the rows of means.
inline Ipp8u matchValue(Ipp8u value, float alpha, const LocalMeans& means, std::size_t k) {
  const float large = atLeast(means.overlayLarge[k]), small = atLeast(means.overlaySmall[k]);
  const float backLarge = atLeast(means.backLarge[k]), backSmall = atLeast(means.backSmall[k]);
  const float rest = 1.0F - alpha;
  const float ratio = atLeast((large * alpha + small * rest) / (backLarge * alpha + backSmall * rest));
  const long result = std::lrintf(static_cast<float>(value) / ratio);
  return static_cast<Ipp8u>(result > 255 ? 255 : result < 0 ? 0 : result);
}

inline void matchPixels(Ipp8u* pixels, const LocalMeans& means, unsigned channels, std::size_t begin, std::size_t end) {
  for (std::size_t i = begin; i < end; ++i) {
    const float alpha = static_cast<float>(pixels[4 * i + 3]) / 255.0F;
    for (std::size_t c = 0; c < 3; ++c) {
      const std::size_t k = 4 * i + c;
      if ((channels >> c & 1) != 0) pixels[k] = matchValue(pixels[k], alpha, means, k);
    }
  }
}

inline void gaussRowLoop(const Ipp32f* src, const Ipp32f* weights, int taps, Ipp32f* dst, int count) {
  for (int x = 0; x < count; ++x) dst[x] = 0.0F;
  for (int t = 0; t < taps; ++t) {
    for (int x = 0; x < count; ++x) dst[x] += src[x + t] * weights[t];
  }
}

inline void gaussColumnsLoop(const Ipp32f* const* rows, const Ipp32f* weights, int taps, Ipp32f* dst,
                             std::ptrdiff_t dstStep, int outputs, int count) {
  for (int r = 0; r < outputs; ++r) {
    Ipp32f* to = reinterpret_cast<Ipp32f*>(reinterpret_cast<Ipp8u*>(dst) + r * dstStep);
    for (int x = 0; x < count; ++x) to[x] = 0.0F;
    for (int t = 0; t < taps; ++t) {
      const Ipp32f* from = rows[r + t];
      for (int x = 0; x < count; ++x) to[x] += from[x] * weights[t];
    }
  }
}

inline void splitPixels(const Ipp32f* src, Ipp32f* const dst[4], std::size_t begin, std::size_t end) {
  for (std::size_t i = begin; i < end; ++i) {
    for (std::size_t c = 0; c < 4; ++c) dst[c][i] = src[4 * i + c];
  }
}

inline void joinPixels(const Ipp32f* const src[4], Ipp32f* dst, std::size_t begin, std::size_t end) {
  for (std::size_t i = begin; i < end; ++i) {
    for (std::size_t c = 0; c < 4; ++c) dst[4 * i + c] = src[c][i];
  }
}

}  // namespace
