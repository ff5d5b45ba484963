#include <algorithm>
#include <memory>
#include <new>

#include "primitives/ippi.h"
#include "primitives/rows.h"

namespace {

void largerOf(const Ipp32f* src, Ipp32f* __restrict dst, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) dst[i] = dst[i] < src[i] ? src[i] : dst[i];
}

// Largest of `span` neighbours, for `count` places.
void slideMax(const Ipp32f* src, Ipp32f* dst, std::size_t count, int span) {
  std::copy_n(src, count, dst);
  for (int i = 1; i < span; ++i) largerOf(src + i, dst, count);
}

IppStatus checkMask(IppiSize mask, IppiPoint anchor) {
  if (mask.width < 1 || mask.height < 1) return ippStsMaskSizeErr;
  const bool inside = anchor.x >= 0 && anchor.y >= 0 && anchor.x < mask.width && anchor.y < mask.height;
  return inside ? ippStsNoErr : ippStsAnchorErr;
}

}  // namespace

// First along the rows into work memory, then down the columns of that.
IppStatus ippiFilterMax_32f_C1R(const Ipp32f* src, int srcStep, Ipp32f* dst, int dstStep, IppiSize roi, IppiSize mask,
                                IppiPoint anchor) {
  if (const IppStatus status = checkRegion(roi, src, dst)) return status;
  if (srcStep < 1 || dstStep < 1) return ippStsStepErr;
  if (const IppStatus status = checkMask(mask, anchor)) return status;
  const auto count = static_cast<std::size_t>(roi.width);
  const std::size_t rows = static_cast<std::size_t>(roi.height) + static_cast<std::size_t>(mask.height) - 1;
  const std::unique_ptr<Ipp32f[]> work(new (std::nothrow) Ipp32f[count * rows]);
  if (work == nullptr) return ippStsMemAllocErr;
  for (std::size_t y = 0; y < rows; ++y) {
    const Ipp32f* from = rowAt(src, srcStep, static_cast<int>(y) - anchor.y) - anchor.x;
    slideMax(from, work.get() + y * count, count, mask.width);
  }
  for (int y = 0; y < roi.height; ++y) {
    const Ipp32f* from = work.get() + static_cast<std::size_t>(y) * count;
    Ipp32f* to = rowAt(dst, dstStep, y);
    std::copy_n(from, count, to);
    for (int j = 1; j < mask.height; ++j) largerOf(from + static_cast<std::size_t>(j) * count, to, count);
  }
  return ippStsNoErr;
}
