#include "eyes/lbp.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace {

// Where a point of the circle falls along one axis: between pixels `near` and `far`, limited to the image.
struct Place {
  std::size_t near;
  std::size_t far;
  float fraction;  // from near to far; negative where truncation goes up, which extrapolates
};

Place placeOf(double coordinate, int size) {
  const int whole = static_cast<int>(coordinate);
  const auto inside = [=](int i) { return static_cast<std::size_t>(std::clamp(i, 0, size - 1)); };
  return {inside(whole), inside(whole + 1), static_cast<float>(coordinate) - static_cast<float>(whole)};
}

// Places of one point of the circle for all centres along an axis.
std::vector<Place> placesAlong(double offset, int size) {
  // The last term keeps values on whole numbers from falling below them.
  constexpr double kUp = 9.999999974752427e-07;
  std::vector<Place> places;
  for (int i = 0; i < size; ++i) places.push_back(placeOf(offset + i + kUp, size));
  return places;
}

// Single precision weights would not sum to 1, and a flat picture would come out with patterns.
double bilinear(const unsigned char* pixels, std::size_t width, const Place& x, const Place& y) {
  const double fx = x.fraction, fy = y.fraction;
  const unsigned char *upper = pixels + y.near * width, *lower = pixels + y.far * width;
  return (1 - fy) * (1 - fx) * upper[x.near] + (1 - fy) * fx * upper[x.far] + (1 - fx) * fy * lower[x.near] +
         fx * fy * lower[x.far];
}

// Bit i of the pattern is point i of the circle.
int codeOf(std::uint32_t pattern, int points) {
  const std::uint32_t all = (std::uint32_t{1} << points) - 1;
  const std::uint32_t before = ((pattern << 1) | (pattern >> (points - 1))) & all;
  const std::uint32_t rises = pattern & ~before;  // bit i: point i is set and point i - 1 is not
  if (std::popcount(rises) > 1) return 0;
  if (pattern == 0) return 1;
  if (pattern == all) return 2;
  return std::popcount(pattern) + 2 + std::countr_zero(rises) * (points - 1);
}

}  // namespace

void Calc_LBP(const unsigned char* pixels, int* codes, int width, int height, int points, int radius) {
  if (width < 1 || height < 1) return;
  const auto columns = static_cast<std::size_t>(width), rows = static_cast<std::size_t>(height);
  std::vector<std::uint32_t> patterns(columns * rows);
  for (int i = 0; i < points; ++i) {
    const float turn = static_cast<float>(i) / static_cast<float>(points);
    const double angle = (turn + turn) * 3.1415927f;
    const std::vector<Place> xs = placesAlong(std::cos(angle) * radius, width);
    const std::vector<Place> ys = placesAlong(std::sin(angle) * radius, height);
    for (std::size_t y = 0; y < rows; ++y) {
      for (std::size_t x = 0; x < columns; ++x) {
        const std::size_t at = x + y * columns;
        // The centre must be brighter by more than rounding.
        const bool brighter = pixels[at] + 1e-6 < bilinear(pixels, columns, xs[x], ys[y]);
        patterns[at] |= static_cast<std::uint32_t>(brighter) << i;
      }
    }
  }
  std::transform(patterns.begin(), patterns.end(), codes, [=](std::uint32_t p) { return codeOf(p, points); });
}
