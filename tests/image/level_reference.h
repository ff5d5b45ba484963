// The local matching of levels, computed directly in double precision from planes.
#pragma once

#include <algorithm>
#include <cmath>

#include "image/TIppiImage.h"
#include "tests/primitives/gauss_reference.h"

inline GaussPlane<double> blurredChannel(const TIppiImage& image, int channel, double sigma) {
  GaussPlane<double> plane(image.Width, image.Height);
  for (int y = 0; y < image.Height; ++y) {
    for (int x = 0; x < image.Width; ++x) {
      plane.values[static_cast<std::size_t>(y * image.Width + x)] = image.Pixels[y * image.Step + 4 * x + channel];
    }
  }
  // Halves go to the even number, and an even size grows by one.
  const int size = std::max(3, static_cast<int>(std::nearbyint(sigma * 1.5)));
  return gaussFiltered(plane, size % 2 == 0 ? size + 1 : size, static_cast<float>(sigma));
}

// What a channel of `image`, of the size of `other`, becomes; not yet rounded.
inline GaussPlane<double> matchedChannel(const TIppiImage& other, const TIppiImage& image, int channel) {
  const double small = static_cast<float>(image.Width / 12.0), large = static_cast<float>(image.Width / 5.0);
  const auto otherSmall = blurredChannel(other, channel, small), imageSmall = blurredChannel(image, channel, small);
  const auto otherLarge = blurredChannel(other, channel, large), imageLarge = blurredChannel(image, channel, large);
  const auto held = [](double value) { return std::abs(value) < 1e-5 ? 1e-5 : value; };
  GaussPlane<double> result(image.Width, image.Height);
  for (std::size_t i = 0; i < result.values.size(); ++i) {
    const int x = static_cast<int>(i) % image.Width, y = static_cast<int>(i) / image.Width;
    const unsigned char* pixel = image.Pixels + y * image.Step + 4 * x;
    const double a = pixel[3] / 255.0;
    const double mine = held(imageLarge.values[i]) * a + held(imageSmall.values[i]) * (1 - a);
    const double theirs = held(otherLarge.values[i]) * a + held(otherSmall.values[i]) * (1 - a);
    result.values[i] = std::min(pixel[channel] / held(mine / theirs), 255.0);
  }
  return result;
}
