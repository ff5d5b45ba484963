// A picture that tells where each of its pixels was.
#pragma once

#include <cstddef>

#include "image/TIppiImage.h"

// Column x is `factor` times x in red, row y from the top the same in green, and blue is 50.
inline void makeRamp(TIppiImage& image, int width, int height, int factor = 1) {
  image.AllocNew(width, height);
  for (int y = 0; y < height; ++y) {
    unsigned char* row = image.Pixels + static_cast<std::ptrdiff_t>(height - 1 - y) * image.Step;
    for (int x = 0; x < width; ++x) {
      row[3 * x] = static_cast<unsigned char>(factor * x);
      row[3 * x + 1] = static_cast<unsigned char>(factor * y);
      row[3 * x + 2] = 50;
    }
  }
}

inline const unsigned char* pixelAt(const TIppiImage& image, int x, int y) {
  return image.Pixels + static_cast<std::ptrdiff_t>(image.Height - 1 - y) * image.Step + 3 * x;
}
