#include <algorithm>

#include "image/TIppiImage.h"
#include "primitives/ippi.h"

namespace {

// One axis of the overlap of an overlay with its background. 64 bits: the overlay may lie anywhere.
struct Span {
  long long skipped;  // pixels of the overlay before the background begins
  long long start;    // first pixel of the background
  long long length;   // pixels of the overlap
};

Span overlap(long long start, long long length, long long backLength, long long resultLength) {
  Span span;
  span.skipped = std::max(-start, 0LL);
  span.start = std::max(start, 0LL);
  span.length = length - span.skipped;
  span.length = std::min(span.length, std::min(backLength, resultLength) - span.start);
  return span;
}

bool isColourWithAlpha(const TIppiImage& image) { return image.Mode == imRGBA32 && image.Pixels != nullptr; }

Ipp8u* pixelAt(const TIppiImage& image, long long column, long long row) {
  return image.Pixels + row * image.Step + column * 4;
}

}  // namespace

void TIppiImage::AddAlpha(TIppiImage& alpha) {
  if (!isColourWithAlpha(*this) || alpha.Width < Width || alpha.Height < Height) return;
  if (&alpha == this) {
    TIppiImage copy;
    copy.Assign(alpha);
    AddAlpha(copy);
    return;
  }
  ippiCopy_8u_C1C4R(alpha.Pixels, alpha.Step, Pixels + 3, Step, RoiSize);
}

void TIppiImage::PutOver(TIppiImage& back, TIppiImage& result, int x, int y) {
  if (!isColourWithAlpha(*this) || !isColourWithAlpha(back) || !isColourWithAlpha(result)) return;
  if (&result == this) {
    TIppiImage overlay;
    overlay.Assign(*this);
    overlay.PutOver(back, result, x, y);
    return;
  }
  const long long bottomRow = static_cast<long long>(back.Height) - y - RoiSize.height;
  const Span columns = overlap(x, RoiSize.width, back.Width, result.Width);
  const Span rows = overlap(bottomRow, RoiSize.height, back.Height, result.Height);
  // The composition covers one column and one row less than the overlap.
  if (columns.length < 2 || rows.length < 2) return;
  const IppiSize size = {static_cast<int>(columns.length - 1), static_cast<int>(rows.length - 1)};
  ippiAlphaComp_8u_AC4R(pixelAt(*this, columns.skipped, rows.skipped), Step, pixelAt(back, columns.start, rows.start),
                        back.Step, pixelAt(result, columns.start, rows.start), result.Step, size, ippAlphaOver);
}
