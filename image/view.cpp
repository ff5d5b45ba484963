#include "image/view.h"

#include <cstddef>

namespace {

// Bytes of a pixel of the 8-bit modes; the float modes are not cut.
int pixelBytes(TIppiImageMode mode) { return mode == imGray8 ? 1 : mode == imRGB24 ? 3 : 4; }

}  // namespace

bool TImageView::Fits(const TIppiImage& image, int x1, int y1, int x2, int y2) {
  return image.Pixels != nullptr && image.Mode <= imRGBA32 && x1 >= 0 && y1 >= 0 && x1 <= x2 && y1 <= y2 &&
         x2 < image.Width && y2 < image.Height;
}

TImageView::TImageView(const TIppiImage& image, int x1, int y1, int x2, int y2) : TIppiImage(image.Mode) {
  const std::ptrdiff_t firstRow = image.Height - 1 - y2;
  Pixels = image.Pixels + firstRow * image.Step + static_cast<std::ptrdiff_t>(x1) * pixelBytes(image.Mode);
  PixelsF = reinterpret_cast<float*>(Pixels);
  Width = RoiSize.width = x2 - x1 + 1;
  Height = RoiSize.height = y2 - y1 + 1;
  Step = image.Step;
  SizeBytes = Step * Height;
}

TImageView::~TImageView() {
  Pixels = nullptr;
  PixelsF = nullptr;
}
