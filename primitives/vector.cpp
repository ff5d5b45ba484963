#include <cmath>
#include <cstddef>

#include "primitives/ipps.h"
#include "primitives/kernels.h"

namespace {

template <class... Pointers>
IppStatus checkVector(int length, const Pointers*... vectors) {
  if ((!vectors || ...)) return ippStsNullPtrErr;
  return length < 1 ? ippStsSizeErr : ippStsNoErr;
}

}  // namespace

IppStatus ippsConvert_8u32f(const Ipp8u* src, Ipp32f* dst, int length) {
  if (const IppStatus status = checkVector(length, src, dst)) return status;
  kernels().pixel.convert8u32f(src, dst, static_cast<std::size_t>(length));
  return ippStsNoErr;
}

IppStatus ippsMulC_32f_I(Ipp32f value, Ipp32f* srcDst, int length) {
  if (const IppStatus status = checkVector(length, srcDst)) return status;
  kernels().vector.mulC(value, srcDst, static_cast<std::size_t>(length));
  return ippStsNoErr;
}

IppStatus ippsAddC_32f_I(Ipp32f value, Ipp32f* srcDst, int length) {
  if (const IppStatus status = checkVector(length, srcDst)) return status;
  kernels().vector.addC(value, srcDst, static_cast<std::size_t>(length));
  return ippStsNoErr;
}

IppStatus ippsThreshold_LTValGTVal_32f_I(Ipp32f* srcDst, int length, Ipp32f levelLT, Ipp32f valueLT, Ipp32f levelGT,
                                         Ipp32f valueGT) {
  if (const IppStatus status = checkVector(length, srcDst)) return status;
  kernels().vector.threshold(srcDst, static_cast<std::size_t>(length), levelLT, valueLT, levelGT, valueGT);
  return ippStsNoErr;
}

IppStatus ippsDotProd_32f(const Ipp32f* src1, const Ipp32f* src2, int length, Ipp32f* product) {
  if (const IppStatus status = checkVector(length, src1, src2, product)) return status;
  *product = kernels().vector.dotProd(src1, src2, static_cast<std::size_t>(length));
  return ippStsNoErr;
}

IppStatus ippsAbs_32f(const Ipp32f* src, Ipp32f* dst, int length) {
  if (const IppStatus status = checkVector(length, src, dst)) return status;
  for (int i = 0; i < length; ++i) dst[i] = std::fabs(src[i]);
  return ippStsNoErr;
}

IppStatus ippsAbs_32f_I(Ipp32f* srcDst, int length) { return ippsAbs_32f(srcDst, srcDst, length); }

IppStatus ippsMaxEvery_32f_I(const Ipp32f* src, Ipp32f* srcDst, int length) {
  if (const IppStatus status = checkVector(length, src, srcDst)) return status;
  for (int i = 0; i < length; ++i) srcDst[i] = srcDst[i] < src[i] ? src[i] : srcDst[i];
  return ippStsNoErr;
}
