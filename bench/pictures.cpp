#include "bench/pictures.h"

#include <algorithm>
#include <cmath>

namespace {

// Integer hash of a lattice point, as a value in [-1, 1).
float latticeValue(std::uint32_t x, std::uint32_t y, std::uint32_t layer) {
  std::uint32_t h = x * 0x9E3779B1u ^ y * 0x85EBCA77u ^ layer * 0xC2B2AE3Du;
  h = (h ^ (h >> 15)) * 0x2C1B3C6Du;
  h = (h ^ (h >> 12)) * 0x297A2D39u;
  h ^= h >> 15;
  return static_cast<float>(h) * (2.0f / 4294967296.0f) - 1.0f;
}

// Adds one octave of bilinear lattice noise, `cell` pixels between lattice points.
void addOctave(std::vector<float>& plane, int width, int height, int cell, float amplitude, std::uint32_t layer) {
  const int columns = width / cell + 2;
  std::vector<float> line(static_cast<std::size_t>(columns));
  for (int y = 0; y < height; ++y) {
    const auto row = static_cast<std::uint32_t>(y / cell);
    const float fy = static_cast<float>(y % cell) / static_cast<float>(cell);
    for (int i = 0; i < columns; ++i) {
      const auto x = static_cast<std::uint32_t>(i);
      const float above = latticeValue(x, row, layer);
      line[x] = amplitude * (above + fy * (latticeValue(x, row + 1, layer) - above));
    }
    float* out = plane.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(width);
    for (int x = 0; x < width; ++x) {
      const auto i = static_cast<std::size_t>(x / cell);
      const float fx = static_cast<float>(x % cell) / static_cast<float>(cell);
      out[x] += line[i] + fx * (line[i + 1] - line[i]);
    }
  }
}

std::vector<float> makePlane(int width, int height, std::uint32_t layer) {
  std::vector<float> plane(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), 128.0f);
  const int longest = std::max(width, height);
  float amplitude = 60.0f;
  for (int cell = std::max(longest / 3, 1); cell >= 1; cell /= 2, amplitude *= 0.62f) {
    addOctave(plane, width, height, cell, amplitude, layer++);
  }
  return plane;
}

std::uint8_t toByte(float value) { return static_cast<std::uint8_t>(std::clamp(value, 0.0f, 255.0f)); }

}  // namespace

BenchPicture makeGrayPicture(int width, int height) {
  const std::vector<float> plane = makePlane(width, height, 1);
  BenchPicture picture{width, height, 1, std::vector<std::uint8_t>(plane.size())};
  std::transform(plane.begin(), plane.end(), picture.samples.begin(), toByte);
  return picture;
}

BenchPicture makeColorPicture(int width, int height) {
  const std::vector<float> plane = makePlane(width, height, 1);
  BenchPicture picture{width, height, 3, std::vector<std::uint8_t>(plane.size() * 3)};
  for (std::size_t i = 0; i < plane.size(); ++i) {
    // Colour varies slowly in photos: one luminance plane with a tint that drifts over the rows.
    const float tint = 20.0f * static_cast<float>(i) / static_cast<float>(plane.size());
    picture.samples[3 * i] = toByte(plane[i] + tint);
    picture.samples[3 * i + 1] = toByte(plane[i]);
    picture.samples[3 * i + 2] = toByte(plane[i] - tint);
  }
  return picture;
}
