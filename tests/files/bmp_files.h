// BMP files put together byte by byte.
#pragma once

#include <random>

#include "tests/files/files.h"

// The fields of the two headers; what no reader needs is zero, as some writers leave it.
struct BmpFields {
  int width = 0, height = 0, depth = 24;
  int compression = 0;
  int offBits = -1;  // -1: right behind palette or masks
  std::uint32_t fileBytes = 0, pixelBytes = 0;
  std::uint32_t verticalResolution = 2000;  // pixels per metre
  std::uint32_t colours = 0;                // entries of the palette, 0 for as many as the depth has
};

constexpr int kBmpHeaderBytes = 54;

inline Bytes bmpHeader(const BmpFields& fields) {
  const int palette = fields.depth < 16 ? 4 << fields.depth : 0, masks = fields.compression == 3 ? 12 : 0;
  const int behind = kBmpHeaderBytes + (palette != 0 ? palette : masks);
  const auto word = [](int value) { return static_cast<std::uint32_t>(value); };
  Bytes bytes = {'B', 'M'};
  for (const std::uint32_t value : {fields.fileBytes, 0U, word(fields.offBits < 0 ? behind : fields.offBits), 40U,
                                    word(fields.width), word(fields.height)}) {
    putLittleEndian(bytes, value, 4);
  }
  putLittleEndian(bytes, 1, 2);
  putLittleEndian(bytes, word(fields.depth), 2);
  for (const std::uint32_t value :
       {word(fields.compression), fields.pixelBytes, 2835U, fields.verticalResolution, fields.colours, 0U}) {
    putLittleEndian(bytes, value, 4);
  }
  return bytes;
}

inline int bmpRowSize(int width, int depth) { return (width * depth + 31) / 32 * 4; }

// Of 5, 6 and 5 bits, for depth 16.
inline void putBmpMasks(Bytes& bytes) {
  for (const std::uint32_t mask : {0xF800U, 0x07E0U, 0x001FU}) putLittleEndian(bytes, mask, 4);
}

inline void putRandom(Bytes& bytes, int count, std::mt19937& random) {
  for (int i = 0; i < count; ++i) bytes.push_back(static_cast<unsigned char>(random()));
}

// Random palette and pixels, with masks of 5, 6 and 5 bits at depth 16 if wanted.
inline Bytes randomBmp(int width, int height, int depth, bool masks, unsigned seed) {
  std::mt19937 random(seed);
  Bytes bytes = bmpHeader({width, height, depth, masks ? 3 : 0});
  if (masks) putBmpMasks(bytes);
  if (depth < 16) putRandom(bytes, 4 << depth, random);
  putRandom(bytes, bmpRowSize(width, depth) * height, random);
  return bytes;
}
