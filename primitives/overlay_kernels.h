// Row kernels behind the matching of an overlay to its background: the Gaussian mean, the planes it works on and
// the division by the ratio of brightness; see kernels.h. All of it is single precision, and every output is
// evaluated in the order written in overlay_loops.h.
#pragma once

#include <cstddef>

#include "primitives/ippdefs.h"

// The most rows that gaussColumns makes at once: their sums share the loads of the rows they have in common.
constexpr int kGaussOutputs = 4;

// One row of each of the four local means: four floats a pixel, of which the fourth is not used.
struct LocalMeans {
  const Ipp32f* backSmall;
  const Ipp32f* overlaySmall;
  const Ipp32f* backLarge;
  const Ipp32f* overlayLarge;
};

struct OverlayKernels {
  // dst[x] = the sum of src[x + t] * weights[t], added to 0 in the order of t. `dst` does not overlap `src`.
  void (*gaussRow)(const Ipp32f* src, const Ipp32f* weights, int taps, Ipp32f* dst, int count);
  // The same down the columns for `outputs` rows (1 to kGaussOutputs, at most `taps`): row r of `dst` comes from
  // rows[r] to rows[r + taps - 1]. The step is in bytes.
  void (*gaussColumns)(const Ipp32f* const* rows, const Ipp32f* weights, int taps, Ipp32f* dst, std::ptrdiff_t dstStep,
                       int outputs, int count);
  // Four channels of `count` pixels apart and together.
  void (*splitC4)(const Ipp32f* src, Ipp32f* const dst[4], std::size_t count);
  void (*joinC4)(const Ipp32f* const src[4], Ipp32f* dst, std::size_t count);
  // Divides the bytes of the colour channels chosen by `channels` (bit k for channel k, not channel 3) by the ratio
  // of the overlay's local mean to the background's, taken between the small and the large reach by alpha.
  void (*matchRow)(Ipp8u* pixels, const LocalMeans& means, unsigned channels, std::size_t count);
};

void fillOverlayKernelsBase(OverlayKernels& table);
void fillOverlayKernelsSse41(OverlayKernels& table);
void fillOverlayKernelsAvx2(OverlayKernels& table);
