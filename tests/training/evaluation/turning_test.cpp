#include "training/evaluation/turning.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "image/TIppiImage.h"

namespace evaluation {
namespace {

constexpr int kWidth = 90;
constexpr int kHeight = 70;
constexpr double kCentreX = 40;
constexpr double kCentreY = 33;

unsigned char& pixelAt(TIppiImage& image, int x, int y) {
  return image.Pixels[(image.Height - 1 - y) * image.Step + x];
}

// A bright spot of three by three pixels on gray.
void makeSpot(TIppiImage& image, int x, int y) {
  image.AllocNew(kWidth, kHeight);
  for (int row = 0; row < kHeight; ++row) {
    for (int column = 0; column < kWidth; ++column) pixelAt(image, column, row) = 100;
  }
  for (int dy = -1; dy <= 1; ++dy) {
    for (int dx = -1; dx <= 1; ++dx) pixelAt(image, x + dx, y + dy) = 250;
  }
}

class TurnPicture : public testing::TestWithParam<int> {};

TEST_P(TurnPicture, MovesASpotClockwiseAboutTheCentre) {
  const int x = 60, y = 33;
  TIppiImage image, turned;
  makeSpot(image, x, y);
  turnPicture(image, GetParam(), kCentreX, kCentreY, turned);
  ASSERT_EQ(turned.Width, kWidth);
  ASSERT_EQ(turned.Height, kHeight);
  // Clockwise with y downwards: (r, 0) goes to (r cos, r sin).
  const double angle = GetParam() * std::numbers::pi / 180;
  const int tx = static_cast<int>(std::lround(kCentreX + (x - kCentreX) * std::cos(angle)));
  const int ty = static_cast<int>(std::lround(kCentreY + (x - kCentreX) * std::sin(angle)));
  EXPECT_GT(pixelAt(turned, tx, ty), 200);
  for (int row = 0; row < kHeight; ++row) {
    for (int column = 0; column < kWidth; ++column) {
      ASSERT_GE(pixelAt(turned, column, row), 99) << column << ' ' << row;
      if (std::hypot(column - tx, row - ty) > 4) {
        ASSERT_LE(pixelAt(turned, column, row), 101) << column << ' ' << row;
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Degrees, TurnPicture, testing::Values(-90, -22, -2, 0, 18, 22, 45, 90));

}  // namespace
}  // namespace evaluation
