#include <cmath>
#include <limits>
#include <stdexcept>

#include "tests/image/pictures.h"

namespace {

struct SizeCase {
  int side;
  double ratio;
  int floored;
  int rounded;
};

// The floored sides lose a pixel where the product is whole and the ratio at most 2 (above, 2e-16 is
// less than half a unit in the ratio's last place); halves are rounded to even.
TEST(Resize, SidesFollowTheSizeRule) {
  constexpr SizeCase kCases[] = {
      {100, 0.5, 49, 50},   {100, 1.0, 99, 100},  {97, 0.5, 48, 48}, {99, 0.5, 49, 50},    {100, 2.0, 199, 200},
      {100, 2.5, 250, 250}, {100, 3.0, 300, 300}, {1, 1.0, 0, 1},    {32, 0.5125, 16, 16}, {32, 0.2625, 8, 8},
      {101, 0.5, 50, 50},   {103, 0.5, 51, 52},   {10, 0.01, 0, 0},
  };
  for (const SizeCase& c : kCases) {
    TIppiImage image(imGray8), dest;
    image.AllocNew(c.side, c.side);
    dest.FloorResize = true;
    image.Resize(dest, c.ratio);
    EXPECT_EQ(dest.Width, c.floored) << c.side << " by " << c.ratio;
    EXPECT_EQ(dest.Height, c.floored);
    dest.FloorResize = false;
    image.Resize(dest, c.ratio);
    EXPECT_EQ(dest.Width, c.rounded) << c.side << " by " << c.ratio;
    EXPECT_TRUE(soundImage(dest));
  }
}

TEST(Resize, RatiosWithoutASensibleSizeAreRefusedOrGiveAnEmptyPicture) {
  TIppiImage image(imRGB24), dest(imRGBA32);
  fillRandom(image, 50, 40, 31);
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  for (const bool floored : {true, false}) {
    dest.FloorResize = floored;
    for (const double ratio : {0.0, -1.0, -1e300, 1e-300, 1e-9}) {
      image.Resize(dest, ratio);
      EXPECT_EQ(dest.Pixels, nullptr) << ratio;
      EXPECT_EQ(dest.Mode, imRGB24);
    }
    for (const double ratio : {std::nan(""), kInfinity, -kInfinity, 1e300, 1e9, 5000.0, 1300.0}) {
      EXPECT_THROW(image.Resize(dest, ratio), std::length_error) << ratio;
      EXPECT_EQ(dest.Pixels, nullptr);
    }
  }
}

TEST(Resize, AFlatPictureStaysFlatInEveryMode) {
  for (const TIppiImageMode mode : kAllModes) {
    for (const double ratio : {0.37, 0.999, 1.0, 1.7}) {
      TIppiImage image(mode), dest;
      image.AllocNew(31, 23);
      const int channels = channelsOf(mode);
      for (int y = 0; y < 23; ++y) {
        for (int i = 0; i < 31 * channels; ++i) {
          if (isFloat(mode)) {
            image.PixelsF[y * (image.Step / 4) + i] = 77;
          } else {
            image.Pixels[y * image.Step + i] = 77;
          }
        }
      }
      image.Resize(dest, ratio);
      ASSERT_EQ(dest.Mode, mode);
      for (int y = 0; y < dest.Height; ++y) {
        for (int i = 0; i < dest.Width * channels; ++i) {
          if (isFloat(mode)) {
            ASSERT_NEAR(dest.PixelsF[y * (dest.Step / 4) + i], 77, 1e-4);
          } else {
            ASSERT_EQ(dest.Pixels[y * dest.Step + i], 77) << modeName(mode) << ' ' << ratio;
          }
        }
      }
    }
  }
}

// By 1.0 the lower left part comes back: the top row and the last column are lost.
TEST(Resize, ByOneLosesTheTopRowAndTheLastColumn) {
  TIppiImage image(imRGB24), dest, expected;
  fillRandom(image, 20, 15, 32);
  image.Resize(dest, 1.0);
  image.CopyTo(expected, 0, 1, 18, 14);
  EXPECT_TRUE(samePicture(dest, expected));
}

TEST(Resize, IntoItselfWorksAsThroughATemporaryWithItsOwnSizeRule) {
  TIppiImage image(imRGB24), expected;
  fillRandom(image, 40, 30, 33);
  image.FloorResize = expected.FloorResize = false;
  image.Resize(expected, 0.5);
  image.Resize(image, 0.5);
  EXPECT_TRUE(samePicture(image, expected));
  EXPECT_EQ(image.Width, 20);
}

TEST(Resize, OfEmptyAndFreedPicturesIsSafe) {
  TIppiImage image(imRGBA32), dest;
  image.Resize(dest, 2.0);
  EXPECT_EQ(dest.Pixels, nullptr);
  fillRandom(image, 10, 10, 34);
  image.FreeImage();
  image.Resize(dest, 0.7);
  EXPECT_EQ(dest.Width, 6);
}

}  // namespace
