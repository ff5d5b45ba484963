// Pictures that ask for more time and memory than their bytes are worth.
#pragma once

#include "tests/files/files.h"

// The file with other sides in its frame or header, and its pixels as they were.
Bytes jpegWithSides(const Bytes& bytes, int width, int height);
Bytes pngWithSides(Bytes bytes, std::uint32_t width, std::uint32_t height);
Bytes pngWithChunk(Bytes file, const char* type, const Bytes& data);

// How a JPEG file is coded: one scan, or several that each walk over all blocks.
enum class JpegCoding { kBaseline, kProgressive, kArithmetic, kArithmeticProgressive };

struct Bomb {
  int width = 8;
  int height = 8;
  int channels = 3;
};

// A small picture in which nothing stands, of which the header claims the sides.
Bytes emptyJpeg(const Bomb& claimed, JpegCoding coding);
// The same with its last scan `times` times, and then with `padding` bytes more.
Bytes manyScans(const Bomb& claimed, JpegCoding coding, int times, std::size_t padding = 0);
// A picture of one colour, all of it there, in as few bytes as the format can do.
Bytes flatJpeg(const Bomb& size, JpegCoding coding);
// Black, in one chunk of packed rows. `behind` is packed with them, as rows that the header does not tell of.
Bytes flatPng(const Bomb& size, bool interlaced, const Bytes& behind = {});
// `size` zeros as deflate packs them, a thousandth of it, and then other bytes.
Bytes packedZeros(std::size_t size, const Bytes& behind = {});
// The headers, a palette and the share of the rows.
Bytes flatBmp(const Bomb& size, int depth, double share);
