#include <algorithm>

#include "image/TIppiImage.h"
#include "primitives/ippi.h"

namespace {

// What is handed to a border primitive: the part of the source that the rectangle holds, and where it
// lands in the destination's buffer. 64 bits, since corners may lie anywhere in the range of int.
struct Cut {
  long long row;  // first buffer row of the source part
  long long column;
  long long width;
  long long height;
  long long top;  // buffer rows before the part, which are above the top of the picture
  long long left;
};

struct Corners {
  long long x1, y1, x2, y2;  // inclusive, y from the top of the picture
};

Cut findCut(const TIppiImage& src, const IppiSize& out, const Corners& r) {
  Cut cut;
  cut.left = std::max(-r.x1, 0LL);
  cut.column = std::max(r.x1, 0LL);
  cut.row = std::max(src.Height - r.y2 - 1, 0LL);
  cut.height = out.height - std::max(-r.y1, 0LL);
  cut.width = src.Width > r.x2 ? out.width - cut.left : src.Width - cut.column;
  cut.top = 0;
  if (r.y2 >= src.Height) {
    cut.top = r.y2 - src.Height + 1;
    cut.height = src.Height - std::max(r.y1, 0LL);
  }
  // A kept destination may be larger than the rectangle; what the source lacks must not be read.
  cut.width = std::min(cut.width, src.Width - cut.column);
  cut.height = std::min(cut.height, src.Height - cut.row);
  return cut;
}

// A rectangle that misses the image, or a destination that can't hold the part.
bool refused(const Cut& cut, const IppiSize& out) {
  return cut.width <= 0 || cut.height <= 0 || cut.width + cut.left > out.width || cut.height + cut.top > out.height;
}

int clampedSide(long long side) { return static_cast<int>(std::clamp(side, -1LL, kMaxImageSide + 1LL)); }

void allocRectangle(TIppiImage& dest, TIppiImageMode mode, const Corners& r) {
  dest.FreeImage();
  dest.Mode = mode;
  dest.AllocNew(clampedSide(r.x2 - r.x1 + 1), clampedSide(r.y2 - r.y1 + 1));
}

// Runs `copy(source address, source size, top, left)` unless there is nothing to copy.
template <class Copy>
void cutOut(const TIppiImage& src, const TIppiImage& dest, const Corners& r, Copy copy) {
  if (src.Pixels == nullptr || dest.Pixels == nullptr || src.Mode > imRGBA32 || dest.Mode != src.Mode) return;
  const Cut cut = findCut(src, dest.RoiSize, r);
  if (refused(cut, dest.RoiSize)) return;
  const int channels = src.Mode == imRGB24 ? 3 : src.Mode == imRGBA32 ? 4 : 1;
  copy(src.Pixels + cut.row * src.Step + cut.column * channels,
       IppiSize{static_cast<int>(cut.width), static_cast<int>(cut.height)}, static_cast<int>(cut.top),
       static_cast<int>(cut.left));
}

void copyWithZeros(const TIppiImage& src, TIppiImage& dest, const Corners& r) {
  cutOut(src, dest, r, [&](const Ipp8u* from, IppiSize size, int top, int left) {
    constexpr Ipp8u kZeros[4] = {0, 0, 0, 0};
    switch (src.Mode) {
      case imRGB24:
        ippiCopyConstBorder_8u_C3R(from, src.Step, size, dest.Pixels, dest.Step, dest.RoiSize, top, left, kZeros);
        break;
      case imRGBA32:
        ippiCopyConstBorder_8u_C4R(from, src.Step, size, dest.Pixels, dest.Step, dest.RoiSize, top, left, kZeros);
        break;
      default:
        ippiCopyConstBorder_8u_C1R(from, src.Step, size, dest.Pixels, dest.Step, dest.RoiSize, top, left, 0);
    }
  });
}

void copyWithEdges(const TIppiImage& src, TIppiImage& dest, const Corners& r) {
  cutOut(src, dest, r, [&](const Ipp8u* from, IppiSize size, int top, int left) {
    const auto copy = src.Mode == imRGB24    ? ippiCopyReplicateBorder_8u_C3R
                      : src.Mode == imRGBA32 ? ippiCopyReplicateBorder_8u_C4R
                                             : ippiCopyReplicateBorder_8u_C1R;
    copy(from, src.Step, size, dest.Pixels, dest.Step, dest.RoiSize, top, left);
  });
}

template <class Operation>
void cutInto(TIppiImage& src, TIppiImage& dest, const Corners& r, bool keepDest, Operation operation) {
  if (&src == &dest) {
    TIppiImage result;
    if (keepDest) result.Assign(src);
    cutInto(src, result, r, keepDest, operation);
    dest.Swap(result);
    return;
  }
  if (!keepDest) allocRectangle(dest, src.Mode, r);
  operation(src, dest, r);
}

}  // namespace

void TIppiImage::CopyTo(TIppiImage& dest, int x1, int y1, int x2, int y2, bool keepDest) {
  cutInto(*this, dest, {x1, y1, x2, y2}, keepDest, copyWithZeros);
}

void TIppiImage::CopyToReplicateBorder(TIppiImage& dest, int x1, int y1, int x2, int y2, bool keepDest) {
  cutInto(*this, dest, {x1, y1, x2, y2}, keepDest, copyWithEdges);
}
