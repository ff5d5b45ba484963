// Files for the tests of the codecs, written and read with libjpeg and libpng directly.
#pragma once

#include <png.h>

#include "tests/files/jpeg_files.h"

// Interleaved samples of a file, top row first.
struct Samples {
  int width = 0;
  int height = 0;
  int channels = 0;
  Bytes data;

  const unsigned char* pixel(int x, int y) const {
    return data.data() + (static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x)) *
                             static_cast<std::size_t>(channels);
  }
  unsigned char* row(int y) { return data.data() + static_cast<std::size_t>(y * width * channels); }
};

// Smooth enough for JPEG, with something in every row and column.
Samples makeSamples(int width, int height, int channels);

// The size and the components are those of the samples.
Bytes writeJpeg(const Samples& samples, JpegForm form = {}, int quality = 85);
// What libjpeg alone makes of the bytes; nothing where it reports an error.
std::optional<Samples> decodeJpeg(const Bytes& bytes);

struct PngKind {
  int colourType = PNG_COLOR_TYPE_RGB;
  int bitDepth = 8;
  bool interlaced = false;
  bool extraChunks = false;  // gamma, text and a transparent colour
};
// `samples` holds the rows as packed in the file: for depth 16 two bytes a sample, below 8 several a byte.
Bytes writePng(int width, int height, const Bytes& rows, const PngKind& kind);
Bytes writePng(const Samples& samples, const PngKind& kind);
std::optional<Samples> decodePng(const Bytes& bytes);

// What `work` writes to the descriptors of standard output and error.
std::string printedBy(const std::function<void()>& work);
