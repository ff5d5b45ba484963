// What an image must hold after a load, from the samples that the bare decoder gives.
#pragma once

#include "tests/codecs/files.h"
#include "tests/image/pictures.h"

// `takeAlpha`: a fourth channel reaches imRGBA32; else alpha is 255.
inline Pixel expectedPixel(const unsigned char* p, int channels, TIppiImageMode mode, bool takeAlpha) {
  const unsigned char red = p[0], green = channels == 1 ? p[0] : p[1], blue = channels == 1 ? p[0] : p[2];
  if (mode == imGray8 && channels == 1) return {p[0], 0, 0, 0};
  if (mode == imGray8) return {static_cast<unsigned char>((1225 * red + 2404 * green + 467 * blue) >> 12), 0, 0, 0};
  if (mode == imRGB24) return {red, green, blue, 0};
  return {red, green, blue, channels == 4 && takeAlpha ? p[3] : static_cast<unsigned char>(255)};
}

inline testing::AssertionResult holds(const TIppiImage& image, const Samples& samples, bool takeAlpha) {
  const auto result = pixelsAre(image, samples.width, samples.height, [&](int x, int y) {
    return expectedPixel(samples.pixel(x, y), samples.channels, image.Mode, takeAlpha);
  });
  return result ? soundImage(image) : result;
}
