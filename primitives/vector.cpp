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
  for (int i = 0; i < length; ++i) srcDst[i] *= value;
  return ippStsNoErr;
}

IppStatus ippsAddC_32f_I(Ipp32f value, Ipp32f* srcDst, int length) {
  if (const IppStatus status = checkVector(length, srcDst)) return status;
  for (int i = 0; i < length; ++i) srcDst[i] += value;
  return ippStsNoErr;
}

IppStatus ippsThreshold_LTValGTVal_32f_I(Ipp32f* srcDst, int length, Ipp32f levelLT, Ipp32f valueLT, Ipp32f levelGT,
                                         Ipp32f valueGT) {
  if (const IppStatus status = checkVector(length, srcDst)) return status;
  for (int i = 0; i < length; ++i) {
    const Ipp32f value = srcDst[i];
    srcDst[i] = value < levelLT ? valueLT : value > levelGT ? valueGT : value;
  }
  return ippStsNoErr;
}

IppStatus ippsDotProd_32f(const Ipp32f* src1, const Ipp32f* src2, int length, Ipp32f* product) {
  if (const IppStatus status = checkVector(length, src1, src2, product)) return status;
  constexpr int kSums = 16;
  Ipp32f sums[kSums] = {};
  int i = 0;
  for (; i + kSums <= length; i += kSums) {
    for (int k = 0; k < kSums; ++k) sums[k] += src1[i + k] * src2[i + k];
  }
  for (int k = 0; i + k < length; ++k) sums[k] += src1[i + k] * src2[i + k];
  for (int half = kSums / 2; half > 0; half /= 2) {
    for (int k = 0; k < half; ++k) sums[k] += sums[k + half];
  }
  *product = sums[0];
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
