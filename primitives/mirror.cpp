#include <algorithm>
#include <cstring>

#include "primitives/ippi.h"
#include "primitives/kernels.h"
#include "primitives/rows.h"

namespace {

// Pixels of one end of a row that are turned at a time; four bytes of each stand on the stack.
constexpr std::size_t kChunk = 256;

// What differs between the layouts: how a run is reversed, and how colours are put down.
struct MirrorRows {
  std::size_t pixelBytes;
  PixelRow reverse;
  bool keepsAlpha;
};

void put(const MirrorRows& rows, const Ipp8u* from, Ipp8u* to, std::size_t count) {
  if (rows.keepsAlpha) {
    kernels().pixel.copyAC4(from, to, count);
  } else {
    std::memcpy(to, from, count * rows.pixelBytes);
  }
}

// Works from both ends inward; what is left in the middle is turned in one piece.
void reverseInPlace(const MirrorRows& rows, Ipp8u* row, std::size_t count) {
  Ipp8u left[kChunk * 4], right[kChunk * 4];
  std::size_t begin = 0, end = count;
  while (begin < end) {
    const std::size_t take = std::min(kChunk, std::max<std::size_t>((end - begin) / 2, 1));
    Ipp8u* head = row + begin * rows.pixelBytes;
    Ipp8u* tail = row + (end - take) * rows.pixelBytes;
    rows.reverse(head, left, take);
    rows.reverse(tail, right, take);
    put(rows, right, head, take);
    put(rows, left, tail, take);
    begin += take;
    end -= take;
  }
}

void exchangeRows(const MirrorRows& rows, Ipp8u* a, Ipp8u* b, std::size_t count) {
  if (rows.keepsAlpha) {
    kernels().pixel.exchangeAC4(a, b, count);
  } else {
    kernels().pixel.exchange(a, b, count * rows.pixelBytes);
  }
}

IppStatus mirrorInPlace(const MirrorRows& rows, Ipp8u* image, int step, IppiSize roi, int flip) {
  if (const IppStatus status = checkRegion(roi, image)) return status;
  const auto count = static_cast<std::size_t>(roi.width);
  if (flip == ippAxsHorizontal) {
    for (int y = 0; y < roi.height / 2; ++y) {
      exchangeRows(rows, rowAt(image, step, y), rowAt(image, step, roi.height - 1 - y), count);
    }
    return ippStsNoErr;
  }
  if (flip != ippAxsVertical) return ippStsBadArgErr;
  for (int y = 0; y < roi.height; ++y) reverseInPlace(rows, rowAt(image, step, y), count);
  return ippStsNoErr;
}

}  // namespace

IppStatus ippiMirror_8u_C1IR(Ipp8u* srcDst, int step, IppiSize roi, int flip) {
  return mirrorInPlace({1, kernels().pixel.reverseC1, false}, srcDst, step, roi, flip);
}

IppStatus ippiMirror_8u_C3IR(Ipp8u* srcDst, int step, IppiSize roi, int flip) {
  return mirrorInPlace({3, kernels().pixel.reverseC3, false}, srcDst, step, roi, flip);
}

IppStatus ippiMirror_8u_C4IR(Ipp8u* srcDst, int step, IppiSize roi, int flip) {
  return mirrorInPlace({4, kernels().pixel.reverseC4, false}, srcDst, step, roi, flip);
}

IppStatus ippiMirror_8u_AC4IR(Ipp8u* srcDst, int step, IppiSize roi, int flip) {
  return mirrorInPlace({4, kernels().pixel.reverseC4, true}, srcDst, step, roi, flip);
}

IppStatus ippiMirror_8u_C1R(const Ipp8u* src, int srcStep, Ipp8u* dst, int dstStep, IppiSize roi, int flip) {
  if (const IppStatus status = checkRegion(roi, src, dst)) return status;
  if (flip == ippAxsVertical) return forRows(src, srcStep, dst, dstStep, roi, kernels().pixel.reverseC1);
  if (flip != ippAxsHorizontal) return ippStsBadArgErr;
  for (int y = 0; y < roi.height; ++y) {
    std::memcpy(rowAt(dst, dstStep, y), rowAt(src, srcStep, roi.height - 1 - y), static_cast<std::size_t>(roi.width));
  }
  return ippStsNoErr;
}
