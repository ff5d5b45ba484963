#include <algorithm>
#include <cstring>

#include "primitives/ippi.h"
#include "primitives/rows.h"

namespace {

// Where the source lands in the destination, in pixels.
struct Placing {
  IppiSize src;
  IppiSize dst;
  int top;
  int left;
};

// In 64 bits: sums of two ints from a caller may pass the end of an int.
IppStatus checkPlacing(const Placing& at) {
  if (at.top < 0 || at.left < 0) return ippStsSizeErr;
  const bool fits =
      at.dst.width >= std::int64_t{at.src.width} + at.left && at.dst.height >= std::int64_t{at.src.height} + at.top;
  return fits ? ippStsNoErr : ippStsSizeErr;
}

template <std::size_t channels>
void fillPixels(Ipp8u* dst, std::size_t count, const Ipp8u* pixel) {
  if (std::all_of(pixel, pixel + channels, [=](Ipp8u v) { return v == pixel[0]; })) {
    std::memset(dst, pixel[0], count * channels);
    return;
  }
  for (std::size_t i = 0; i < count; ++i) std::memcpy(dst + i * channels, pixel, channels);
}

// One row: `leftPixel`, the source row, `rightPixel`.
template <std::size_t channels>
void placeRow(const Ipp8u* src, Ipp8u* dst, const Placing& at, const Ipp8u* leftPixel, const Ipp8u* rightPixel) {
  const auto left = static_cast<std::size_t>(at.left), width = static_cast<std::size_t>(at.src.width);
  const auto right = static_cast<std::size_t>(at.dst.width) - left - width;
  fillPixels<channels>(dst, left, leftPixel);
  std::memcpy(dst + left * channels, src, width * channels);
  fillPixels<channels>(dst + (left + width) * channels, right, rightPixel);
}

template <std::size_t channels>
IppStatus constBorder(const Ipp8u* src, int srcStep, Ipp8u* dst, int dstStep, const Placing& at, const Ipp8u* value) {
  if (const IppStatus status = checkRegion(at.src, src, dst, value)) return status;
  if (const IppStatus status = checkPlacing(at)) return status;
  for (int y = 0; y < at.dst.height; ++y) {
    Ipp8u* row = rowAt(dst, dstStep, y);
    if (y < at.top || y - at.top >= at.src.height) {
      fillPixels<channels>(row, static_cast<std::size_t>(at.dst.width), value);
    } else {
      placeRow<channels>(rowAt(src, srcStep, y - at.top), row, at, value, value);
    }
  }
  return ippStsNoErr;
}

template <std::size_t channels>
IppStatus replicateBorder(const Ipp8u* src, int srcStep, Ipp8u* dst, int dstStep, const Placing& at) {
  if (const IppStatus status = checkRegion(at.src, src, dst)) return status;
  if (const IppStatus status = checkPlacing(at)) return status;
  for (int y = 0; y < at.src.height; ++y) {
    const Ipp8u* from = rowAt(src, srcStep, y);
    const Ipp8u* last = from + static_cast<std::size_t>(at.src.width - 1) * channels;
    placeRow<channels>(from, rowAt(dst, dstStep, at.top + y), at, from, last);
  }
  const std::size_t bytes = static_cast<std::size_t>(at.dst.width) * channels;
  const int bottom = at.top + at.src.height;
  for (int y = 0; y < at.top; ++y) std::memcpy(rowAt(dst, dstStep, y), rowAt(dst, dstStep, at.top), bytes);
  for (int y = bottom; y < at.dst.height; ++y) {
    std::memcpy(rowAt(dst, dstStep, y), rowAt(dst, dstStep, bottom - 1), bytes);
  }
  return ippStsNoErr;
}

}  // namespace

IppStatus ippiCopyConstBorder_8u_C1R(const Ipp8u* src, int srcStep, IppiSize srcRoi, Ipp8u* dst, int dstStep,
                                     IppiSize dstRoi, int top, int left, Ipp8u value) {
  return constBorder<1>(src, srcStep, dst, dstStep, {srcRoi, dstRoi, top, left}, &value);
}

IppStatus ippiCopyConstBorder_8u_C3R(const Ipp8u* src, int srcStep, IppiSize srcRoi, Ipp8u* dst, int dstStep,
                                     IppiSize dstRoi, int top, int left, const Ipp8u value[3]) {
  return constBorder<3>(src, srcStep, dst, dstStep, {srcRoi, dstRoi, top, left}, value);
}

IppStatus ippiCopyConstBorder_8u_C4R(const Ipp8u* src, int srcStep, IppiSize srcRoi, Ipp8u* dst, int dstStep,
                                     IppiSize dstRoi, int top, int left, const Ipp8u value[4]) {
  return constBorder<4>(src, srcStep, dst, dstStep, {srcRoi, dstRoi, top, left}, value);
}

IppStatus ippiCopyConstBorder_32s_C1R(const Ipp32s* src, int srcStep, IppiSize srcRoi, Ipp32s* dst, int dstStep,
                                      IppiSize dstRoi, int top, int left, Ipp32s value) {
  Ipp8u bytes[sizeof value];
  std::memcpy(bytes, &value, sizeof value);
  return constBorder<4>(reinterpret_cast<const Ipp8u*>(src), srcStep, reinterpret_cast<Ipp8u*>(dst), dstStep,
                        {srcRoi, dstRoi, top, left}, bytes);
}

IppStatus ippiCopyReplicateBorder_8u_C1R(const Ipp8u* src, int srcStep, IppiSize srcRoi, Ipp8u* dst, int dstStep,
                                         IppiSize dstRoi, int top, int left) {
  return replicateBorder<1>(src, srcStep, dst, dstStep, {srcRoi, dstRoi, top, left});
}

IppStatus ippiCopyReplicateBorder_8u_C3R(const Ipp8u* src, int srcStep, IppiSize srcRoi, Ipp8u* dst, int dstStep,
                                         IppiSize dstRoi, int top, int left) {
  return replicateBorder<3>(src, srcStep, dst, dstStep, {srcRoi, dstRoi, top, left});
}

IppStatus ippiCopyReplicateBorder_8u_C4R(const Ipp8u* src, int srcStep, IppiSize srcRoi, Ipp8u* dst, int dstStep,
                                         IppiSize dstRoi, int top, int left) {
  return replicateBorder<4>(src, srcStep, dst, dstStep, {srcRoi, dstRoi, top, left});
}
