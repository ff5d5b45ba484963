// Row kernels of the resizes and the rotation; see kernels.h. All integer sums are exact, and the float
// expressions are evaluated per sample in the order written in resample_base.cpp, so that a level may
// spread samples over vector lanes without changing a bit.
#pragma once

#include <cstddef>
#include <cstdint>

#include "primitives/ippdefs.h"

// The part of one axis that an output of the area mean covers: pixel `first`, then `full` whole pixels, then
// pixel `last`. The weights already contain the division by the covered length. Where only one pixel is
// covered, `last` equals `first` and counts 0.
struct AreaSpan {
  int first;
  int full;
  int last;
  float firstWeight;
  float fullWeight;
  float lastWeight;
};

// A position in the source or a move between two destination pixels, in pixels times 2^32.
struct FixedPoint {
  std::int64_t x;
  std::int64_t y;
};

// Bits of the fraction that the bilinear weights of the rotation keep: the largest number that leaves the
// weight 1.0 inside the signed 16 bits of a multiply-add.
constexpr int kRotateWeightBits = 14;

// Column means carry 8 bits of fraction between the two passes of the area mean.
constexpr float kAreaFractionScale = 256.0F;
// Unit of the narrow area weights. They are stored negated because +1.0 would not fit 16 bits.
constexpr int kAreaWeightBits = 15;
constexpr int kAreaMaxTaps = 8;
// More rows than this could overflow the 16-bit column sums.
constexpr int kAreaMaxSummedRows = 256;

constexpr int kLanczosTaps = 6;

// Arrays by channel count are indexed by resampleChannelIndex.
constexpr int resampleChannelIndex(int channels) { return channels == 1 ? 0 : channels - 2; }

struct ResampleKernels {
  // sum[k] = the sum of sample k of `rows` rows (at most kAreaMaxSummedRows).
  void (*areaSumRows)(const Ipp8u* row, std::ptrdiff_t step, int rows, std::uint16_t* sum, int samples);
  // out[k] = weighted sum of three rows, rounded; the weights sum to kAreaFractionScale.
  void (*areaMixRows)(const Ipp8u* first, const Ipp8u* middle, const Ipp8u* last, const float weights[3],
                      std::uint16_t* out, int samples);
  // The same with a row of sums in the middle.
  void (*areaMixSums)(const Ipp8u* first, const std::uint16_t* middle, const Ipp8u* last, const float weights[3],
                      std::uint16_t* out, int samples);
  // Weighted sums of `taps` (4 or kAreaMaxTaps) neighbouring pixels from pixel first[k] on, to bytes. `columns`
  // must be readable kAreaMaxTaps pixels and 16 bytes beyond its end.
  void (*areaNarrow[3])(const std::uint16_t* columns, const std::int32_t* first, const std::int16_t* weights, int taps,
                        Ipp8u* out, int pixels);
  // The same for any length of span, through its whole pixels' sum.
  void (*areaWide[3])(const std::uint16_t* columns, const AreaSpan* spans, Ipp8u* out, int pixels);

  // Six taps from pixel first[k] on; six weights a pixel.
  void (*lanczosRow[3])(const float* row, const std::int32_t* first, const float* weights, float* out, int pixels);
  void (*lanczosColumns8u)(const float* const rows[kLanczosTaps], const float weights[kLanczosTaps], Ipp8u* out,
                           int samples);
  void (*lanczosColumns32f)(const float* const rows[kLanczosTaps], const float weights[kLanczosTaps], float* out,
                            int samples);

  // Bilinear samples of `src` at from, from + move, ... All four neighbours must lie inside the source, and
  // 8 bytes (C3, C4) or 4 bytes (C1) from each left neighbour on must be readable; offsets from `src` fit 32 bits.
  void (*rotateSpan[3])(const Ipp8u* src, std::ptrdiff_t step, FixedPoint from, FixedPoint move, Ipp8u* out,
                        int pixels);
};

void fillResampleKernelsBase(ResampleKernels& table);
void fillResampleKernelsSse41(ResampleKernels& table);
void fillResampleKernelsAvx2(ResampleKernels& table);
