#include "primitives/ippi.h"
#include "primitives/kernels.h"
#include "primitives/rows.h"

namespace {

// A channel number out of range would read another pixel's bytes, or none.
IppStatus checkOrder(const int* order, int channels) {
  for (int k = 0; k < channels; ++k) {
    if (order[k] < 0 || order[k] >= channels) return ippStsBadArgErr;
  }
  return ippStsNoErr;
}

IppStatus swapChannels(const Ipp8u* src, int srcStep, Ipp8u* dst, int dstStep, IppiSize roi, const int* order,
                       int channels, SwapRow row) {
  if (const IppStatus status = checkRegion(roi, src, dst, order)) return status;
  if (const IppStatus status = checkOrder(order, channels)) return status;
  return forRows(src, srcStep, dst, dstStep, roi,
                 [=](const Ipp8u* from, Ipp8u* to, std::size_t count) { row(from, to, count, order); });
}

}  // namespace

IppStatus ippiSwapChannels_8u_C3R(const Ipp8u* src, int srcStep, Ipp8u* dst, int dstStep, IppiSize roi,
                                  const int order[3]) {
  return swapChannels(src, srcStep, dst, dstStep, roi, order, 3, kernels().pixel.swapC3);
}

IppStatus ippiSwapChannels_8u_C4IR(Ipp8u* srcDst, int step, IppiSize roi, const int order[4]) {
  return swapChannels(srcDst, step, srcDst, step, roi, order, 4, kernels().pixel.swapC4);
}
