// What the primitives share: the checks of their arguments and the walk over the rows of a region.
#pragma once

#include <cstddef>
#include <type_traits>

#include "primitives/ippdefs.h"

template <class... Pointers>
IppStatus checkRegion(IppiSize roi, const Pointers*... images) {
  if ((!images || ...)) return ippStsNullPtrErr;
  return roi.width < 1 || roi.height < 1 ? ippStsSizeErr : ippStsNoErr;
}

// Row `y` of an image; steps are bytes and may be negative.
template <class Pixel>
Pixel* rowAt(Pixel* image, int step, int y) {
  using Byte = std::conditional_t<std::is_const_v<Pixel>, const Ipp8u, Ipp8u>;
  return reinterpret_cast<Pixel*>(reinterpret_cast<Byte*>(image) + static_cast<std::ptrdiff_t>(y) * step);
}

// Checks the region, then hands each pair of rows to `work`(source row, destination row, pixels).
template <class To, class Work>
IppStatus forRows(const Ipp8u* src, int srcStep, To* dst, int dstStep, IppiSize roi, Work work) {
  if (const IppStatus status = checkRegion(roi, src, dst)) return status;
  for (int y = 0; y < roi.height; ++y) {
    work(rowAt(src, srcStep, y), rowAt(dst, dstStep, y), static_cast<std::size_t>(roi.width));
  }
  return ippStsNoErr;
}
