#include "codecs/BMP.h"

#include <algorithm>
#include <cstdlib>
#include <new>

#include "image/TIppiImage.h"
#include "image/zeroed_buffer.h"

namespace {

constexpr RGBApixel kWhite = {255, 255, 255, 0};

bool sizeAllowed(int width, int height) {
  if (width < 1 || height < 1 || width > kMaxImageSide || height > kMaxImageSide) return false;
  // What a colour image of this size takes.
  return 3LL * width * height <= kMaxImageBytes;
}

template <class T>
T* allocZeroed(std::size_t count) {
  void* const memory = allocZeroedBuffer(count * sizeof(T));
  if (memory == nullptr) throw std::bad_alloc();
  return static_cast<T*>(memory);
}

}  // namespace

BMP::BMP() { SetSize(1, 1); }

BMP::~BMP() {
  FreePixels();
  std::free(Colors);
}

void BMP::FreePixels() {
  if (Pixels != nullptr) std::free(Pixels[0]);
  std::free(Pixels);
  Pixels = nullptr;
}

bool BMP::AllocPixels(int width, int height) {
  if (!sizeAllowed(width, height)) return false;
  const auto columns = static_cast<std::size_t>(width);
  const auto rows = static_cast<std::size_t>(height);
  auto* const table = allocZeroed<RGBApixel*>(columns);
  try {
    table[0] = allocZeroed<RGBApixel>(columns * rows);
  } catch (...) {
    std::free(table);
    throw;
  }
  for (std::size_t x = 1; x < columns; ++x) table[x] = table[0] + x * rows;
  FreePixels();
  Pixels = table;
  Width = width;
  Height = height;
  return true;
}

bool BMP::SetSize(int width, int height) {
  if (!AllocPixels(width, height)) return false;
  std::fill_n(Pixels[0], static_cast<std::size_t>(width) * static_cast<std::size_t>(height), kWhite);
  return true;
}

bool BMP::SetBitDepth(int depth) {
  const bool palette = depth == 1 || depth == 4 || depth == 8;
  if (!palette && depth != 16 && depth != 24 && depth != 32) return false;
  RGBApixel* const colors = palette ? allocZeroed<RGBApixel>(1U << depth) : nullptr;
  if (palette) std::fill_n(colors, 1U << depth, kWhite);
  std::free(Colors);
  Colors = colors;
  BitDepth = depth;
  return true;
}

bool BMP::Fail() {
  SetBitDepth(1);
  SetSize(1, 1);
  return false;
}
