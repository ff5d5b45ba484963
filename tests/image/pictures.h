// Pictures for the tests of images and codecs, and slow, obvious ways to look at them.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <random>
#include <string>

#include "image/TIppiImage.h"

constexpr TIppiImageMode kByteModes[] = {imGray8, imRGB24, imRGBA32};
constexpr TIppiImageMode kAllModes[] = {imGray8, imRGB24, imRGBA32, imGray32f, imRGB32f, imRGBA32f};

inline std::string modeName(TIppiImageMode mode) {
  constexpr const char* kNames[] = {"Gray8", "RGB24", "RGBA32", "Gray32f", "RGB32f", "RGBA32f"};
  return kNames[mode];
}

inline int channelsOf(TIppiImageMode mode) {
  constexpr int kChannels[] = {1, 3, 4, 1, 3, 4};
  return kChannels[mode];
}

inline bool isFloat(TIppiImageMode mode) { return mode >= imGray32f; }

using Pixel = std::array<unsigned char, 4>;

// The address of a pixel of an 8-bit image, y from the top of the picture.
inline unsigned char* at(const TIppiImage& image, int x, int y) {
  return image.Pixels + static_cast<std::ptrdiff_t>(image.Height - 1 - y) * image.Step + x * channelsOf(image.Mode);
}

// Channels that the mode lacks are zero.
inline Pixel pixelAt(const TIppiImage& image, int x, int y) {
  Pixel pixel = {};
  std::memcpy(pixel.data(), at(image, x, y), static_cast<std::size_t>(channelsOf(image.Mode)));
  return pixel;
}

// Random pixels, the padding of the rows left zero.
inline void fillRandom(TIppiImage& image, int width, int height, unsigned seed) {
  std::mt19937 random(seed);
  image.AllocNew(width, height);
  for (int y = 0; y < height; ++y) {
    for (int i = 0; i < width * channelsOf(image.Mode); ++i) {
      if (isFloat(image.Mode)) {
        image.PixelsF[y * (image.Step / 4) + i] = static_cast<float>(random() % 256);
      } else {
        image.Pixels[y * image.Step + i] = static_cast<unsigned char>(random());
      }
    }
  }
}

// Whether there are so many pixels and (x, y) is expected(x, y) everywhere; says where the first difference is.
template <class Expected>
testing::AssertionResult pixelsAre(const TIppiImage& image, int width, int height, Expected expected) {
  if (image.Width != width || image.Height != height || image.Pixels == nullptr) {
    return testing::AssertionFailure() << "size " << image.Width << 'x' << image.Height;
  }
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      const Pixel p = pixelAt(image, x, y), q = expected(x, y);
      if (p == q) continue;
      testing::AssertionResult result = testing::AssertionFailure() << "pixel " << x << ", " << y << ":";
      for (std::size_t k = 0; k < 4; ++k) result << ' ' << int{p[k]} << '/' << int{q[k]};
      return result;
    }
  }
  return testing::AssertionSuccess();
}

// Same mode, size and pixels.
inline testing::AssertionResult samePicture(const TIppiImage& a, const TIppiImage& b) {
  if (a.Mode != b.Mode || a.Width != b.Width || a.Height != b.Height) {
    return testing::AssertionFailure() << modeName(a.Mode) << ' ' << a.Width << 'x' << a.Height << " against "
                                       << modeName(b.Mode) << ' ' << b.Width << 'x' << b.Height;
  }
  if ((a.Pixels == nullptr) != (b.Pixels == nullptr)) return testing::AssertionFailure() << "one is empty";
  if (a.Pixels == nullptr) return testing::AssertionSuccess();
  return pixelsAre(a, b.Width, b.Height, [&](int x, int y) { return pixelAt(b, x, y); });
}

// The fields hold together, and an 8-bit image has zeros in the padding of its rows.
inline testing::AssertionResult soundImage(const TIppiImage& image) {
  const bool fields = static_cast<const void*>(image.PixelsF) == image.Pixels && image.RoiSize.width == image.Width &&
                      image.RoiSize.height == image.Height && image.SizeBytes == image.Step * image.Height;
  if (!fields) return testing::AssertionFailure() << "fields disagree";
  if (image.Pixels == nullptr || isFloat(image.Mode)) return testing::AssertionSuccess();
  for (int y = 0; y < image.Height; ++y) {
    for (int i = image.Width * channelsOf(image.Mode); i < image.Step; ++i) {
      if (image.Pixels[y * image.Step + i] != 0) return testing::AssertionFailure() << "padding of row " << y;
    }
  }
  return testing::AssertionSuccess();
}
