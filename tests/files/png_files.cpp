#include "tests/files/png_files.h"

#include <zlib.h>

std::size_t PngLayout::RowBytes(std::uint32_t pixels) const {
  const std::uint32_t samples = type == kColour ? 3 : type == kColourAlpha ? 4 : type == kGrayAlpha ? 2 : 1;
  return (std::size_t{pixels} * samples * depth + 7) / 8;
}

std::vector<std::pair<std::uint32_t, std::uint32_t>> PngLayout::Passes() const {
  static constexpr std::uint32_t kFirstX[] = {0, 4, 0, 2, 0, 1, 0}, kFirstY[] = {0, 0, 4, 0, 2, 0, 1};
  static constexpr std::uint32_t kStepX[] = {8, 8, 4, 4, 2, 2, 1}, kStepY[] = {8, 8, 8, 4, 4, 2, 2};
  if (interlaced == 0) return {{width, height}};
  const auto count = [](std::uint32_t side, std::uint32_t first, std::uint32_t step) {
    return side <= first ? 0 : (side - first + step - 1) / step;
  };
  std::vector<std::pair<std::uint32_t, std::uint32_t>> passes;
  for (int i = 0; i < 7; ++i)
    passes.emplace_back(count(width, kFirstX[i], kStepX[i]), count(height, kFirstY[i], kStepY[i]));
  return passes;
}

PngChunk pngHeader(const PngLayout& layout) {
  Bytes data;
  putBigEndian(data, layout.width);
  putBigEndian(data, layout.height);
  data.insert(data.end(), {layout.depth, layout.type, 0, 0, layout.interlaced});
  return {"IHDR", data};
}

Bytes chunkBytes(const PngChunk& chunk) {
  Bytes bytes;
  putBigEndian(bytes, static_cast<std::uint32_t>(chunk.data.size()));
  append(bytes, Bytes(chunk.type.begin(), chunk.type.end()));
  append(bytes, chunk.data);
  bytes.resize(bytes.size() + 4);
  mendChecksum(bytes.data(), static_cast<std::uint32_t>(chunk.data.size()));
  return bytes;
}

Bytes joinPng(const PngChunks& chunks) {
  Bytes file = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
  for (const PngChunk& chunk : chunks) append(file, chunkBytes(chunk));
  return file;
}

void mendChecksum(unsigned char* chunk, std::uint32_t length) {
  setBigEndian(chunk + 8 + length, static_cast<std::uint32_t>(crc32(0, chunk + 4, length + 4)), 4);
}

Bytes packed(const Bytes& bytes, int level) {
  uLongf size = compressBound(static_cast<uLong>(bytes.size()));
  Bytes result(size);
  compress2(result.data(), &size, bytes.data(), static_cast<uLong>(bytes.size()), level);
  result.resize(size);
  return result;
}
