#include "primitives/ippi.h"
#include "primitives/kernels.h"
#include "primitives/rows.h"

IppStatus ippiAlphaComp_8u_AC4R(const Ipp8u* a, int aStep, const Ipp8u* b, int bStep, Ipp8u* dst, int dstStep,
                                IppiSize roi, int type) {
  if (const IppStatus status = checkRegion(roi, a, b, dst)) return status;
  if (type != ippAlphaOver) return ippStsBadArgErr;
  const auto row = kernels().pixel.alphaOver;
  for (int y = 0; y < roi.height; ++y) {
    row(rowAt(a, aStep, y), rowAt(b, bStep, y), rowAt(dst, dstStep, y), static_cast<std::size_t>(roi.width));
  }
  return ippStsNoErr;
}
