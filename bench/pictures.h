// Pictures to measure on, the same bytes on every machine.
#pragma once

#include <cstdint>
#include <vector>

// Interleaved samples without padding, top row first.
struct BenchPicture {
  int width = 0;
  int height = 0;
  int channels = 0;  // 1 gray, 3 red green blue
  std::vector<std::uint8_t> samples;

  int step() const { return width * channels; }
};

// Fractal noise over smooth colour: about the spectrum of a photo, so that scans reject windows and codecs
// spend bits as they do on photos, which flat or white-noise pictures would not show.
BenchPicture makeColorPicture(int width, int height);
BenchPicture makeGrayPicture(int width, int height);
