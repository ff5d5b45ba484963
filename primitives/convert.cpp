#include "primitives/ippi.h"
#include "primitives/kernels.h"
#include "primitives/rows.h"

namespace {

IppStatus convert(const Ipp8u* src, int srcStep, Ipp32f* dst, int dstStep, IppiSize roi, std::size_t channels) {
  const auto row = kernels().pixel.convert8u32f;
  return forRows(src, srcStep, dst, dstStep, roi,
                 [=](const Ipp8u* from, Ipp32f* to, std::size_t count) { row(from, to, count * channels); });
}

}  // namespace

IppStatus ippiConvert_8u32f_C1R(const Ipp8u* src, int srcStep, Ipp32f* dst, int dstStep, IppiSize roi) {
  return convert(src, srcStep, dst, dstStep, roi, 1);
}

IppStatus ippiConvert_8u32f_C3R(const Ipp8u* src, int srcStep, Ipp32f* dst, int dstStep, IppiSize roi) {
  return convert(src, srcStep, dst, dstStep, roi, 3);
}

IppStatus ippiConvert_8u32f_C4R(const Ipp8u* src, int srcStep, Ipp32f* dst, int dstStep, IppiSize roi) {
  return convert(src, srcStep, dst, dstStep, roi, 4);
}
