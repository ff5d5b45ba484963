#include "eyes/lbp.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace {

struct Picture {
  int width;
  int height;
  std::vector<unsigned char> pixels;

  Picture(int columns, int rows, unsigned char value = 0)
      : width(columns), height(rows), pixels(static_cast<std::size_t>(columns * rows), value) {}
  unsigned char& at(int x, int y) { return pixels[static_cast<std::size_t>(x + y * width)]; }
  double edge(int x, int y) { return at(std::clamp(x, 0, width - 1), std::clamp(y, 0, height - 1)); }
  std::vector<int> codes(int points = 8, int radius = 2) {
    std::vector<int> result(pixels.size(), -1);
    Calc_LBP(pixels.data(), result.data(), width, height, points, radius);
    return result;
  }
};

// The value on the circle as the sum over the corners with their weights.
double valueAt(Picture& picture, double sx, double sy) {
  const int x0 = static_cast<int>(sx), y0 = static_cast<int>(sy);
  const float fx = static_cast<float>(sx) - static_cast<float>(x0);
  const float fy = static_cast<float>(sy) - static_cast<float>(y0);
  const double right = fx, down = fy;
  return (1 - down) * (1 - right) * picture.edge(x0, y0) + (1 - down) * right * picture.edge(x0 + 1, y0) +
         (1 - right) * down * picture.edge(x0, y0 + 1) + right * down * picture.edge(x0 + 1, y0 + 1);
}

// From the ring of characters '0' and '1' instead of numbers.
int codeOfRing(const std::string& ring) {
  const int points = static_cast<int>(ring.size());
  int rises = 0, start = 0;
  for (int i = 0; i < points; ++i) {
    const bool rise =
        ring[static_cast<std::size_t>(i)] == '1' && ring[static_cast<std::size_t>((i + points - 1) % points)] == '0';
    if (!rise) continue;
    ++rises;
    start = i;
  }
  const int count = static_cast<int>(std::count(ring.begin(), ring.end(), '1'));
  if (rises > 1) return 0;
  if (count == 0) return 1;
  if (count == points) return 2;
  return count + 2 + start * (points - 1);
}

int referenceCode(Picture& picture, int x, int y, int points, int radius) {
  std::string ring;
  for (int i = 0; i < points; ++i) {
    const float part = static_cast<float>(i) / static_cast<float>(points);
    const double angle = static_cast<double>((part + part) * 3.1415927f);
    const double sx = std::cos(angle) * radius + x + 9.999999974752427e-07;
    const double sy = std::sin(angle) * radius + y + 9.999999974752427e-07;
    ring += static_cast<double>(picture.at(x, y)) + 1e-6 < valueAt(picture, sx, sy) ? '1' : '0';
  }
  return codeOfRing(ring);
}

TEST(BinaryPatterns, EqualAnIndependentComputation) {
  std::mt19937 random(3);
  std::set<int> seen;
  for (int round = 0; round < 40; ++round) {
    Picture picture(1 + static_cast<int>(random() % 33), 1 + static_cast<int>(random() % 33));
    const unsigned long levels = 2 + random() % 254;  // few levels make equal neighbours
    for (unsigned char& pixel : picture.pixels) pixel = static_cast<unsigned char>(random() % levels);
    for (const auto& [points, radius] : {std::pair{8, 2}, std::pair{8, 1}, std::pair{12, 3}}) {
      const std::vector<int> codes = picture.codes(points, radius);
      for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
          const int code = codes[static_cast<std::size_t>(x + y * picture.width)];
          ASSERT_EQ(code, referenceCode(picture, x, y, points, radius)) << x << ", " << y;
          if (points == 8) seen.insert(code);
        }
      }
    }
  }
  EXPECT_EQ(*seen.begin(), 0);
  EXPECT_EQ(*seen.rbegin(), 58);
}

}  // namespace
