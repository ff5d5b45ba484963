#include <cstring>

#include "primitives/ippi.h"
#include "primitives/kernels.h"
#include "primitives/rows.h"

namespace {

IppStatus copyBytes(const Ipp8u* src, int srcStep, Ipp8u* dst, int dstStep, IppiSize roi, std::size_t pixelBytes) {
  return forRows(src, srcStep, dst, dstStep, roi,
                 [=](const Ipp8u* from, Ipp8u* to, std::size_t count) { std::memmove(to, from, count * pixelBytes); });
}

template <int channels>
void join(const Ipp8u* const* planes, int srcStep, Ipp8u* dst, int dstStep, IppiSize roi) {
  for (int k = 0; k < channels; ++k) {
    for (int y = 0; y < roi.height; ++y) {
      const Ipp8u* from = rowAt(planes[k], srcStep, y);
      Ipp8u* to = rowAt(dst, dstStep, y) + k;
      for (std::ptrdiff_t x = 0; x < roi.width; ++x) to[x * channels] = from[x];
    }
  }
}

}  // namespace

IppStatus ippiCopy_8u_C1R(const Ipp8u* src, int srcStep, Ipp8u* dst, int dstStep, IppiSize roi) {
  return copyBytes(src, srcStep, dst, dstStep, roi, 1);
}

IppStatus ippiCopy_8u_C3R(const Ipp8u* src, int srcStep, Ipp8u* dst, int dstStep, IppiSize roi) {
  return copyBytes(src, srcStep, dst, dstStep, roi, 3);
}

IppStatus ippiCopy_8u_C4R(const Ipp8u* src, int srcStep, Ipp8u* dst, int dstStep, IppiSize roi) {
  return copyBytes(src, srcStep, dst, dstStep, roi, 4);
}

IppStatus ippiCopy_8u_AC4R(const Ipp8u* src, int srcStep, Ipp8u* dst, int dstStep, IppiSize roi) {
  return forRows(src, srcStep, dst, dstStep, roi, kernels().pixel.copyAC4);
}

IppStatus ippiCopy_8u_AC4C3R(const Ipp8u* src, int srcStep, Ipp8u* dst, int dstStep, IppiSize roi) {
  return forRows(src, srcStep, dst, dstStep, roi, kernels().pixel.copyAC4C3);
}

IppStatus ippiCopy_8u_C3AC4R(const Ipp8u* src, int srcStep, Ipp8u* dst, int dstStep, IppiSize roi) {
  return forRows(src, srcStep, dst, dstStep, roi, kernels().pixel.copyC3AC4);
}

IppStatus ippiCopy_8u_C1C4R(const Ipp8u* src, int srcStep, Ipp8u* dst, int dstStep, IppiSize roi) {
  return forRows(src, srcStep, dst, dstStep, roi, kernels().pixel.copyC1C4);
}

// One plane given for every channel, the way gray becomes colour, is the case that has a kernel.
IppStatus ippiCopy_8u_P3C3R(const Ipp8u* const src[3], int srcStep, Ipp8u* dst, int dstStep, IppiSize roi) {
  if (src == nullptr) return ippStsNullPtrErr;
  if (const IppStatus status = checkRegion(roi, src[0], src[1], src[2], dst)) return status;
  if (src[0] == src[1] && src[0] == src[2]) {
    return forRows(src[0], srcStep, dst, dstStep, roi, kernels().pixel.replicateC3);
  }
  join<3>(src, srcStep, dst, dstStep, roi);
  return ippStsNoErr;
}

IppStatus ippiCopy_8u_P4C4R(const Ipp8u* const src[4], int srcStep, Ipp8u* dst, int dstStep, IppiSize roi) {
  if (src == nullptr) return ippStsNullPtrErr;
  if (const IppStatus status = checkRegion(roi, src[0], src[1], src[2], src[3], dst)) return status;
  if (src[0] == src[1] && src[0] == src[2] && src[0] == src[3]) {
    return forRows(src[0], srcStep, dst, dstStep, roi, kernels().pixel.replicateC4);
  }
  join<4>(src, srcStep, dst, dstStep, roi);
  return ippStsNoErr;
}

IppStatus ippiCopy_32f_C4P4R(const Ipp32f* src, int srcStep, Ipp32f* const dst[4], int dstStep, IppiSize roi) {
  if (dst == nullptr) return ippStsNullPtrErr;
  if (const IppStatus status = checkRegion(roi, src, dst[0], dst[1], dst[2], dst[3])) return status;
  for (int y = 0; y < roi.height; ++y) {
    Ipp32f* const rows[4] = {rowAt(dst[0], dstStep, y), rowAt(dst[1], dstStep, y), rowAt(dst[2], dstStep, y),
                             rowAt(dst[3], dstStep, y)};
    kernels().overlay.splitC4(rowAt(src, srcStep, y), rows, static_cast<std::size_t>(roi.width));
  }
  return ippStsNoErr;
}

IppStatus ippiCopy_32f_P4C4R(const Ipp32f* const src[4], int srcStep, Ipp32f* dst, int dstStep, IppiSize roi) {
  if (src == nullptr) return ippStsNullPtrErr;
  if (const IppStatus status = checkRegion(roi, src[0], src[1], src[2], src[3], dst)) return status;
  for (int y = 0; y < roi.height; ++y) {
    const Ipp32f* const rows[4] = {rowAt(src[0], srcStep, y), rowAt(src[1], srcStep, y), rowAt(src[2], srcStep, y),
                                   rowAt(src[3], srcStep, y)};
    kernels().overlay.joinC4(rows, rowAt(dst, dstStep, y), static_cast<std::size_t>(roi.width));
  }
  return ippStsNoErr;
}
