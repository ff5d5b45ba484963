#include "image/TIppiImage.h"

#include <cstdlib>
#include <new>
#include <stdexcept>
#include <utility>

#include "image/zeroed_buffer.h"
#include "primitives/ippi.h"

namespace {

// Bytes of a row of `width` pixels: room for width + 31 pixels, rounded down to a multiple of 4.
long long rowBytes(TIppiImageMode mode, int width) {
  const long long quads = (static_cast<long long>(width) + 31) / 4;
  switch (mode) {
    case imGray8:
      return 4 * quads;
    case imRGB24:
      return 12 * quads;
    case imRGBA32:
    case imGray32f:
      return 16 * quads;
    case imRGB32f:
      return 48 * quads;
    case imRGBA32f:
      return 64 * quads;
  }
  throw std::length_error("unknown image mode");
}

}  // namespace

TIppiImage::~TIppiImage() { FreeImage(); }

void TIppiImage::FreeImage() {
  std::free(Pixels);
  Pixels = nullptr;
  PixelsF = nullptr;
}

void TIppiImage::SetSizeFields(int width, int height, int step) {
  Width = RoiSize.width = width;
  Height = RoiSize.height = height;
  Step = step;
  SizeBytes = step * height;
}

void TIppiImage::AllocNew(int width, int height) {
  FreeImage();
  SetSizeFields(0, 0, 0);
  if (width < 0 || height < 0) width = height = 0;
  if (width > kMaxImageSide || height > kMaxImageSide) throw std::length_error("image side above the limit");
  const long long step = rowBytes(Mode, width);
  if (step * height > kMaxImageBytes) throw std::length_error("image size above the limit");
  SetSizeFields(width, height, static_cast<int>(step));
  // Without pixels there is nothing to hold, and what calloc(0) answers varies.
  if (width == 0 || height == 0) return;

  void* const buffer = allocZeroedBuffer(static_cast<std::size_t>(SizeBytes));
  if (buffer == nullptr) {
    SetSizeFields(0, 0, 0);
    throw std::bad_alloc();
  }
  Pixels = static_cast<unsigned char*>(buffer);
  PixelsF = static_cast<float*>(buffer);
  if (Mode == imRGBA32) ippiSet_8u_C4CR(255, Pixels + 3, Step, RoiSize);
}

void TIppiImage::Swap(TIppiImage& other) noexcept {
  std::swap(Pixels, other.Pixels);
  std::swap(PixelsF, other.PixelsF);
  std::swap(Width, other.Width);
  std::swap(Height, other.Height);
  std::swap(RoiSize, other.RoiSize);
  std::swap(Step, other.Step);
  std::swap(SizeBytes, other.SizeBytes);
  std::swap(Mode, other.Mode);
}
