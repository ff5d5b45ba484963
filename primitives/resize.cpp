#include "primitives/resize.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>

#include "primitives/ippi.h"
#include "primitives/region.h"

namespace {

// 0 where less than half a pixel remains.
int effectiveSide(int side, double factor, int available) {
  // The small addend absorbs the rounding of factors that were made by a division.
  const double exact = side * factor + 1e-7;
  if (!(exact >= 0.5)) return 0;
  return exact >= available ? available : std::max(1, static_cast<int>(exact));
}

template <class T>
void copyRows(const ResizeJob<T>& job) {
  const auto bytes = static_cast<std::size_t>(job.dstSize.width) * static_cast<std::size_t>(job.channels) * sizeof(T);
  for (int y = 0; y < job.dstSize.height; ++y) std::memcpy(job.dstRow(y), job.srcRow(y), bytes);
}

template <class T>
void run(const ResizeJob<T>& job, int interpolation) {
  if (job.xFactor == 1.0 && job.yFactor == 1.0) return copyRows(job);
  interpolation == IPPI_INTER_SUPER ? resizeArea(job) : resizeLanczos(job);
}

template <class T>
IppStatus resize(int channels, const T* src, IppiSize srcSize, int srcStep, IppiRect srcRoi, T* dst, int dstStep,
                 IppiSize dstRoi, double xFactor, double yFactor, int interpolation) {
  if (src == nullptr || dst == nullptr) return ippStsNullPtrErr;
  if (std::min({srcSize.width, srcSize.height, srcRoi.width, srcRoi.height, dstRoi.width, dstRoi.height}) < 1) {
    return ippStsSizeErr;
  }
  if (!clipRegion(srcSize, srcRoi) || std::max(srcRoi.width, srcRoi.height) > kMaxSide) return ippStsSizeErr;
  if (interpolation != IPPI_INTER_SUPER && interpolation != IPPI_INTER_LANCZOS) return ippStsBadArgErr;
  if (!std::isfinite(xFactor) || !std::isfinite(yFactor)) return ippStsBadArgErr;

  ResizeJob<T> job{src, srcStep, {srcRoi.width, srcRoi.height}, dst, dstStep, {0, 0}, xFactor, yFactor, channels};
  job.dstSize.width = effectiveSide(srcRoi.width, xFactor, dstRoi.width);
  job.dstSize.height = effectiveSide(srcRoi.height, yFactor, dstRoi.height);
  if (job.dstSize.width == 0 || job.dstSize.height == 0) return ippStsResizeNoOperationErr;
  if (std::max(job.dstSize.width, job.dstSize.height) > kMaxSide) return ippStsSizeErr;
  job.src = job.srcRow(srcRoi.y) + static_cast<std::ptrdiff_t>(srcRoi.x) * channels;
  run(job, interpolation);
  return ippStsNoErr;
}

}  // namespace

IppStatus ippiResize_8u_C1R(const Ipp8u* src, IppiSize srcSize, int srcStep, IppiRect srcRoi, Ipp8u* dst, int dstStep,
                            IppiSize dstRoi, double xFactor, double yFactor, int interpolation) {
  return resize(1, src, srcSize, srcStep, srcRoi, dst, dstStep, dstRoi, xFactor, yFactor, interpolation);
}

IppStatus ippiResize_8u_C3R(const Ipp8u* src, IppiSize srcSize, int srcStep, IppiRect srcRoi, Ipp8u* dst, int dstStep,
                            IppiSize dstRoi, double xFactor, double yFactor, int interpolation) {
  return resize(3, src, srcSize, srcStep, srcRoi, dst, dstStep, dstRoi, xFactor, yFactor, interpolation);
}

IppStatus ippiResize_8u_C4R(const Ipp8u* src, IppiSize srcSize, int srcStep, IppiRect srcRoi, Ipp8u* dst, int dstStep,
                            IppiSize dstRoi, double xFactor, double yFactor, int interpolation) {
  return resize(4, src, srcSize, srcStep, srcRoi, dst, dstStep, dstRoi, xFactor, yFactor, interpolation);
}

IppStatus ippiResize_32f_C1R(const Ipp32f* src, IppiSize srcSize, int srcStep, IppiRect srcRoi, Ipp32f* dst,
                             int dstStep, IppiSize dstRoi, double xFactor, double yFactor, int interpolation) {
  return resize(1, src, srcSize, srcStep, srcRoi, dst, dstStep, dstRoi, xFactor, yFactor, interpolation);
}

IppStatus ippiResize_32f_C3R(const Ipp32f* src, IppiSize srcSize, int srcStep, IppiRect srcRoi, Ipp32f* dst,
                             int dstStep, IppiSize dstRoi, double xFactor, double yFactor, int interpolation) {
  return resize(3, src, srcSize, srcStep, srcRoi, dst, dstStep, dstRoi, xFactor, yFactor, interpolation);
}

IppStatus ippiResize_32f_C4R(const Ipp32f* src, IppiSize srcSize, int srcStep, IppiRect srcRoi, Ipp32f* dst,
                             int dstStep, IppiSize dstRoi, double xFactor, double yFactor, int interpolation) {
  return resize(4, src, srcSize, srcStep, srcRoi, dst, dstStep, dstRoi, xFactor, yFactor, interpolation);
}
