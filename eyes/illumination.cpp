#include "eyes/illumination.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace {

constexpr int kSweeps = 100;
constexpr float kConduction = 100.0f;  // towards each neighbour, against 1 towards the pixel's own value

// With two neighbours at distance `step` on either side, for the pixels of one line. Sums run in the order in which
// the terms are written, on every processor.
void relaxLine(const float* image, const float* present, float* __restrict next, std::size_t count,
               std::ptrdiff_t step) {
  constexpr float kWeight = 1 + kConduction + kConduction;
  for (std::size_t i = 0; i < count; ++i) {
    const float* at = present + i;
    next[i] = (image[i] + kConduction * at[-step] + kConduction * at[step]) / kWeight;
  }
}

void relaxInnerRow(const float* image, const float* present, float* __restrict next, std::size_t count,
                   std::ptrdiff_t width) {
  constexpr float kWeight = 1 + kConduction + kConduction + kConduction + kConduction;
  for (std::size_t i = 0; i < count; ++i) {
    const float* at = present + i;
    next[i] =
        (image[i] + kConduction * at[-width] + kConduction * at[width] + kConduction * at[-1] + kConduction * at[1]) /
        kWeight;
  }
}

// The corners of `next` stay as they are.
void sweep(const std::vector<float>& image, const std::vector<float>& present, std::vector<float>& next,
           std::size_t width, std::size_t height) {
  const auto step = static_cast<std::ptrdiff_t>(width);
  const auto along = [&](std::size_t first, std::size_t count) {
    relaxLine(&image[first], &present[first], &next[first], count, 1);
  };
  if (width > 2) along(1, width - 2);
  if (width > 2 && height > 1) along((height - 1) * width + 1, width - 2);
  for (std::size_t y = 1; y + 1 < height; ++y) {
    const std::size_t row = y * width;
    relaxLine(&image[row], &present[row], &next[row], 1, step);
    if (width < 2) continue;
    const std::size_t last = row + width - 1;
    relaxLine(&image[last], &present[last], &next[last], 1, step);
    if (width > 2) relaxInnerRow(&image[row + 1], &present[row + 1], &next[row + 1], width - 2, step);
  }
}

unsigned char reflectance(unsigned char pixel, float illumination) {
  if (pixel == 0) return 0;
  if (illumination < 1e-8) return 255;
  const float value = static_cast<float>(pixel) * 100.0f / illumination;
  return static_cast<unsigned char>(std::clamp(value, 0.0f, 255.0f));
}

}  // namespace

void diffur(const unsigned char* image, float* illumination, int width, int height) {
  if (width < 1 || height < 1) return;
  const auto columns = static_cast<std::size_t>(width), rows = static_cast<std::size_t>(height);
  const std::vector<float> pixels(image, image + columns * rows);
  std::vector<float> present = pixels, next = pixels;
  for (int i = 0; i < kSweeps; ++i) {
    sweep(pixels, present, next, columns, rows);
    present.swap(next);
  }
  std::copy(present.begin(), present.end(), illumination);
}

void IlluminationReflactanceDecomposition(unsigned char* image, int width, int height) {
  if (width < 1 || height < 1) return;
  const std::size_t count = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
  std::vector<float> illumination(count);
  diffur(image, illumination.data(), width, height);
  for (std::size_t i = 0; i < count; ++i) image[i] = reflectance(image[i], illumination[i]);
}
