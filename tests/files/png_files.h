// PNG files put together chunk by chunk, without a check of what is put together.
#pragma once

#include <utility>

#include "tests/files/files.h"

enum PngType : std::uint8_t { kGray = 0, kColour = 2, kPalette = 3, kGrayAlpha = 4, kColourAlpha = 6 };

struct PngLayout {
  std::uint32_t width = 9, height = 7;
  std::uint8_t depth = 8, type = kColour, interlaced = 0;

  // A row, or one of a pass, of that many pixels.
  std::size_t RowBytes(std::uint32_t pixels) const;
  // Width and height of what the rows in the file show: the picture, or the seven passes, of which some may be empty.
  std::vector<std::pair<std::uint32_t, std::uint32_t>> Passes() const;
};

struct PngChunk {
  std::string type;
  Bytes data;
};
using PngChunks = std::vector<PngChunk>;

constexpr std::size_t kPngSignatureBytes = 8, kPngChunkFrame = 12, kPngHeaderEnd = 33;

PngChunk pngHeader(const PngLayout& layout);
// With its length and its checksum.
Bytes chunkBytes(const PngChunk& chunk);
Bytes joinPng(const PngChunks& chunks);
// Right again after a change to the `length` bytes of data of the chunk there.
void mendChecksum(unsigned char* chunk, std::uint32_t length);
// As zlib packs them at once.
Bytes packed(const Bytes& bytes, int level = 9);

// Calls `visit` with each chunk that is there whole: its first byte and the length of its data.
template <typename Byte, typename Visit>
void eachPngChunk(Byte* file, std::size_t size, Visit visit) {
  for (std::size_t at = kPngSignatureBytes; at + kPngChunkFrame <= size;) {
    const std::uint32_t length = bigEndian(file + at);
    if (length > size - at - kPngChunkFrame) return;
    visit(file + at, length);
    at += length + kPngChunkFrame;
  }
}
