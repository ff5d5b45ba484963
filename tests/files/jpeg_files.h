// JPEG files of every form that libjpeg writes, and their segments.
#pragma once

#include <functional>
#include <optional>

#include "codecs/jpeg_library.h"
#include "tests/files/files.h"

struct JpegForm {
  int width = 19, height = 21;
  int components = 3;                       // 1 gray, 2 unknown, 3 colour, 4 CMYK
  std::optional<J_COLOR_SPACE> space = {};  // in the file; libjpeg's own choice if there is none
  bool progressive = false, arithmetic = false, optimised = false;
  int horizontal = 0, vertical = 0;  // sampling of the first component; 0 for libjpeg's own
  unsigned restart = 0;              // in MCUs
};

// `fill` gives the samples of row y from the top. `segments` may write some of its own behind the start.
Bytes writeJpeg(const JpegForm& form, int quality, const std::function<void(int y, Bytes& row)>& fill,
                const std::function<void(jpeg_compress_struct&)>& segments = {});

enum JpegMarker : std::uint8_t {
  kFrame0 = 0xC0,
  kHuffman = 0xC4,
  kStart = 0xD8,
  kEnd = 0xD9,
  kScan = 0xDA,
  kTables = 0xDB
};

// A segment with its marker, or, of a scan, all up to the next marker. The first is the start alone.
using Segments = std::vector<Bytes>;

Segments splitJpeg(const Bytes& file);
Bytes joinJpeg(const Segments& segments);
inline bool isOf(const Bytes& segment, JpegMarker marker) { return segment.size() > 1 && segment[1] == marker; }
