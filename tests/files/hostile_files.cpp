#include "tests/files/hostile_files.h"

#include <zlib.h>

#include <algorithm>

#include "tests/files/bmp_files.h"
#include "tests/files/jpeg_files.h"
#include "tests/files/png_files.h"

namespace {

void pack(z_stream& stream, const unsigned char* data, std::size_t size, int flush, Bytes& packed) {
  Bytes piece(1 << 16);
  stream.next_in = const_cast<Bytef*>(data);
  stream.avail_in = static_cast<uInt>(size);
  do {
    stream.next_out = piece.data();
    stream.avail_out = static_cast<uInt>(piece.size());
    deflate(&stream, flush);
    packed.insert(packed.end(), piece.begin(), piece.end() - static_cast<std::ptrdiff_t>(stream.avail_out));
  } while (stream.avail_out == 0);
}

// Each with the byte of its filter.
std::size_t bytesOfRows(const PngLayout& layout) {
  std::size_t bytes = 0;
  for (const auto& [width, height] : layout.Passes())
    if (width != 0) bytes += (1 + layout.RowBytes(width)) * height;
  return bytes;
}

bool isFrame(const Bytes& segment) {
  if (segment.size() < 10) return false;
  const unsigned char marker = segment[1];
  return marker == 0xC0 || marker == 0xC2 || marker == 0xC9 || marker == 0xCA;  // progressive, arithmetic, both
}

}  // namespace

// The sides stand five bytes behind the marker of the frame.
Bytes jpegWithSides(const Bytes& bytes, int width, int height) {
  Segments segments = splitJpeg(bytes);
  const auto frame = std::find_if(segments.begin(), segments.end(), isFrame);
  if (frame == segments.end()) throw std::logic_error("no frame");
  setBigEndian(frame->data() + 5, static_cast<std::uint32_t>(height), 2);
  setBigEndian(frame->data() + 7, static_cast<std::uint32_t>(width), 2);
  return joinJpeg(segments);
}

Bytes pngWithSides(Bytes bytes, std::uint32_t width, std::uint32_t height) {
  setBigEndian(bytes.data() + 16, width, 4);
  setBigEndian(bytes.data() + 20, height, 4);
  mendChecksum(bytes.data() + kPngSignatureBytes, 13);
  return bytes;
}

// Behind the header.
Bytes pngWithChunk(Bytes file, const char* type, const Bytes& data) {
  const Bytes chunk = chunkBytes({type, data});
  file.insert(file.begin() + kPngHeaderEnd, chunk.begin(), chunk.end());
  return file;
}

Bytes emptyJpeg(const Bomb& claimed, JpegCoding coding) {
  return jpegWithSides(flatJpeg({8, 8, claimed.channels}, coding), claimed.width, claimed.height);
}

Bytes manyScans(const Bomb& claimed, JpegCoding coding, int times, std::size_t padding) {
  Segments segments = splitJpeg(emptyJpeg(claimed, coding));
  const Bytes scan = segments[segments.size() - 2];
  segments.insert(segments.end() - 1, static_cast<std::size_t>(times - 1), scan);
  segments.insert(segments.end() - 1, Bytes(padding, 0));
  return joinJpeg(segments);
}

Bytes flatJpeg(const Bomb& size, JpegCoding coding) {
  const bool arithmetic = coding == JpegCoding::kArithmetic || coding == JpegCoding::kArithmeticProgressive;
  const bool progressive = coding == JpegCoding::kProgressive || coding == JpegCoding::kArithmeticProgressive;
  constexpr int kQuality = 75;
  return writeJpeg({.width = size.width,
                    .height = size.height,
                    .components = size.channels,
                    .progressive = progressive,
                    .arithmetic = arithmetic,
                    .optimised = !arithmetic,
                    .horizontal = 1,
                    .vertical = 1},
                   kQuality, [](int, Bytes& row) { std::fill(row.begin(), row.end(), 128); });
}

Bytes packedZeros(std::size_t size, const Bytes& behind) {
  Bytes zeros(1 << 20, 0), packed;
  z_stream stream = {};
  deflateInit(&stream, 9);
  for (std::size_t left = size; left > 0;) {
    const std::size_t count = std::min(left, zeros.size());
    pack(stream, zeros.data(), count, Z_NO_FLUSH, packed);
    left -= count;
  }
  pack(stream, behind.data(), behind.size(), Z_FINISH, packed);
  deflateEnd(&stream);
  return packed;
}

Bytes flatPng(const Bomb& size, bool interlaced, const Bytes& behind) {
  const PngLayout layout = {static_cast<std::uint32_t>(size.width), static_cast<std::uint32_t>(size.height), 8,
                            size.channels == 1   ? kGray
                            : size.channels == 3 ? kColour
                                                 : kColourAlpha,
                            static_cast<std::uint8_t>(interlaced)};
  return joinPng({pngHeader(layout), {"IDAT", packedZeros(bytesOfRows(layout), behind)}, {"IEND", {}}});
}

Bytes flatBmp(const Bomb& size, int depth, double share) {
  Bytes file = bmpHeader({size.width, size.height, depth});
  if (depth < 16) file.insert(file.end(), std::size_t{4} << depth, 0);
  const double rows = share * static_cast<double>(bmpRowSize(size.width, depth)) * size.height;
  file.insert(file.end(), static_cast<std::size_t>(rows), 0);
  return file;
}
