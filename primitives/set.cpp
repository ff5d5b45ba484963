#include <cstring>

#include "primitives/ippi.h"
#include "primitives/kernels.h"
#include "primitives/rows.h"

IppStatus ippiSet_8u_C1R(Ipp8u value, Ipp8u* dst, int dstStep, IppiSize roi) {
  if (const IppStatus status = checkRegion(roi, dst)) return status;
  for (int y = 0; y < roi.height; ++y) {
    std::memset(rowAt(dst, dstStep, y), value, static_cast<std::size_t>(roi.width));
  }
  return ippStsNoErr;
}

IppStatus ippiSet_8u_C4CR(Ipp8u value, Ipp8u* dst, int dstStep, IppiSize roi) {
  if (const IppStatus status = checkRegion(roi, dst)) return status;
  const auto row = kernels().pixel.setC4C;
  for (int y = 0; y < roi.height; ++y) row(value, rowAt(dst, dstStep, y), static_cast<std::size_t>(roi.width));
  return ippStsNoErr;
}
