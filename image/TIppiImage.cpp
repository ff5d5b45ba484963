#include "image/TIppiImage.h"

#include <cstring>
#include <new>
#include <stdexcept>
#include <utility>

#include "image/pixel_buffer_store.h"
#include "primitives/ippi.h"

namespace {

std::size_t pixelBytes(TIppiImageMode mode) {
  constexpr std::size_t kBytes[] = {1, 3, 4, 4, 12, 16};
  return kBytes[mode];
}

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
  givePixelBuffer(Pixels);
  Pixels = nullptr;
  PixelsF = nullptr;
}

void TIppiImage::SetSizeFields(int width, int height, int step) {
  Width = RoiSize.width = width;
  Height = RoiSize.height = height;
  Step = step;
  SizeBytes = step * height;
}

bool TIppiImage::TakeBuffer(int width, int height) {
  FreeImage();
  SetSizeFields(0, 0, 0);
  if (width < 0 || height < 0) width = height = 0;
  if (width > kMaxImageSide || height > kMaxImageSide) throw std::length_error("image side above the limit");
  const long long step = rowBytes(Mode, width);
  if (step * height > kMaxImageBytes) throw std::length_error("image size above the limit");
  SetSizeFields(width, height, static_cast<int>(step));
  // Without pixels there is nothing to hold, and what calloc(0) answers varies.
  if (width == 0 || height == 0) return true;

  const TPixelBuffer buffer = takePixelBuffer(static_cast<std::size_t>(SizeBytes));
  if (buffer.memory == nullptr) {
    SetSizeFields(0, 0, 0);
    throw std::bad_alloc();
  }
  Pixels = static_cast<unsigned char*>(buffer.memory);
  PixelsF = static_cast<float*>(buffer.memory);
  return buffer.isZero;
}

void TIppiImage::AllocNew(int width, int height) {
  if (!TakeBuffer(width, height)) std::memset(Pixels, 0, static_cast<std::size_t>(SizeBytes));
  if (Mode == imRGBA32 && Pixels != nullptr) ippiSet_8u_C4CR(255, Pixels + 3, Step, RoiSize);
}

void TIppiImage::AllocToFill(int width, int height) {
  if (TakeBuffer(width, height)) return;
  const std::size_t filled = static_cast<std::size_t>(Width) * pixelBytes(Mode);
  for (int y = 0; y < Height; ++y) {
    std::memset(Pixels + static_cast<std::ptrdiff_t>(y) * Step + filled, 0, static_cast<std::size_t>(Step) - filled);
  }
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
