// The two header records of a bitmap file, little-endian and without padding in the file.
#pragma once

#include <cstdint>

constexpr int kBmpHeaderBytes = 54;

struct BMFH {
  std::uint16_t bfType = 0x4D42;  // "BM"
  std::uint32_t bfSize = 0;
  std::uint16_t bfReserved1 = 0;
  std::uint16_t bfReserved2 = 0;
  std::uint32_t bfOffBits = 0;
};

struct BMIH {
  std::uint32_t biSize = 40;
  std::int32_t biWidth = 0;
  std::int32_t biHeight = 0;
  std::uint16_t biPlanes = 1;
  std::uint16_t biBitCount = 24;
  std::uint32_t biCompression = 0;
  std::uint32_t biSizeImage = 0;
  std::uint32_t biXPelsPerMeter = 3780;  // about 96 dots an inch
  std::uint32_t biYPelsPerMeter = 3780;
  std::uint32_t biClrUsed = 0;
  std::uint32_t biClrImportant = 0;
};

void packBmpHeader(const BMFH& file, const BMIH& info, unsigned char bytes[kBmpHeaderBytes]);
void unpackBmpHeader(const unsigned char bytes[kBmpHeaderBytes], BMFH& file, BMIH& info);

// Bytes of a row of pixels in the file, a multiple of 4.
inline long long bmpRowBytes(int depth, int width) { return (static_cast<long long>(depth) * width + 31) / 32 * 4; }
