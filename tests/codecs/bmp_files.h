// Bitmap files put together byte by byte.
#pragma once

#include <random>

#include "tests/codecs/files.h"

inline void putLittleEndian(Bytes& bytes, std::uint32_t value, int count) {
  for (int i = 0; i < count; ++i) bytes.push_back(static_cast<unsigned char>(value >> 8 * i));
}

struct BmpOptions {
  int compression = 0;
  int offBits = -1;  // -1: right behind palette or masks
};

// The 54 bytes of the two headers.
inline Bytes bmpHeader(int width, int height, int depth, const BmpOptions& options = {}) {
  const int behind = depth < 16 ? 54 + (4 << depth) : options.compression == 3 ? 66 : 54;
  Bytes bytes = {'B', 'M'};
  putLittleEndian(bytes, 0, 4);
  putLittleEndian(bytes, 0, 4);
  putLittleEndian(bytes, static_cast<std::uint32_t>(options.offBits < 0 ? behind : options.offBits), 4);
  putLittleEndian(bytes, 40, 4);
  putLittleEndian(bytes, static_cast<std::uint32_t>(width), 4);
  putLittleEndian(bytes, static_cast<std::uint32_t>(height), 4);
  putLittleEndian(bytes, 1, 2);
  putLittleEndian(bytes, static_cast<std::uint32_t>(depth), 2);
  putLittleEndian(bytes, static_cast<std::uint32_t>(options.compression), 4);
  putLittleEndian(bytes, 0, 4);
  putLittleEndian(bytes, 2835, 4);
  putLittleEndian(bytes, 2000, 4);
  putLittleEndian(bytes, 0, 4);
  putLittleEndian(bytes, 0, 4);
  return bytes;
}

inline int bmpRowSize(int width, int depth) { return (width * depth + 31) / 32 * 4; }

inline void putRandom(Bytes& bytes, int count, std::mt19937& random) {
  for (int i = 0; i < count; ++i) bytes.push_back(static_cast<unsigned char>(random()));
}

// Random palette and pixels, with masks of 5, 6 and 5 bits at depth 16 if wanted.
inline Bytes randomBmp(int width, int height, int depth, bool masks, unsigned seed) {
  std::mt19937 random(seed);
  Bytes bytes = bmpHeader(width, height, depth, {masks ? 3 : 0, -1});
  if (masks) {
    for (const std::uint32_t mask : {0xF800U, 0x07E0U, 0x001FU}) putLittleEndian(bytes, mask, 4);
  }
  if (depth < 16) putRandom(bytes, 4 << depth, random);
  putRandom(bytes, bmpRowSize(width, depth) * height, random);
  return bytes;
}
