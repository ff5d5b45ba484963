#include "training/features/forehead_labels.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "features/mean_grid.h"

namespace {

std::array<float, 80> meanPoints() {
  std::array<float, 80> points;
  for (std::size_t n = 0; n < 40; ++n) {
    points[2 * n] = MeanGrid40.Nodes[n].x;
    points[2 * n + 1] = MeanGrid40.Nodes[n].y;
  }
  return points;
}

struct Range {
  float low, high;
};

Range rangeOf(const std::array<float, 80>& points, std::size_t axis) {
  Range range = {points[axis], points[axis]};
  for (std::size_t k = axis; k < 80; k += 2) {
    range = {std::min(range.low, points[k]), std::max(range.high, points[k])};
  }
  return range;
}

// A head turned to the side moves the sides of the face far more than its middle.
TEST(PlaceForehead, KeepsTheBoxAroundTheFace) {
  std::mt19937 random(3);
  std::uniform_real_distribution<float> uniform(-1, 1);
  for (int face = 0; face < 50; ++face) {
    auto points = meanPoints();
    const float side = 12 * uniform(random);
    for (const std::size_t n : {8, 10, 30, 32}) points[2 * n] += side;
    for (const std::size_t n : {9, 11, 31, 33}) points[2 * n] += side;
    points[2 * 29 + 1] += 8 * uniform(random);
    auto placed = points;
    placeForehead(placed);
    const Range x = rangeOf(placed, 0), y = rangeOf(placed, 1);
    EXPECT_EQ(x.low, placed[16]);
    EXPECT_EQ(x.high, placed[18]);
    // The pupils of the mean face stand at 126.5 and 129, its nose tip lies below their middle.
    EXPECT_NEAR((x.low + x.high) / 2, 126.9, 0.5);
    EXPECT_NEAR((y.low + y.high) / 2, 127.3, 0.5);
    for (std::size_t k = 0; k < 80; ++k) {
      if (k != 11 && k != 16 && k != 18) {
        EXPECT_EQ(placed[k], points[k]) << k;
      }
    }
  }
}

// Where the mean face has its forehead, the detector's middle agrees with the box to a few pixels.
TEST(PlaceForehead, HardlyChangesTheMeanFace) {
  const auto points = meanPoints();
  auto placed = points;
  placeForehead(placed);
  for (std::size_t k = 0; k < 80; ++k) EXPECT_NEAR(placed[k], points[k], 8) << k;
}

}  // namespace
