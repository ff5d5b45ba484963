#include <cmath>
#include <limits>

#include "tests/image/pictures.h"

namespace {

// A right angle about the exact middle has no interpolation error: picture column x of the result is
// source row x from the bottom, for a clockwise turn.
TEST(Rotate, ByNinetyDegreesTurnsTheSeenPictureClockwise) {
  for (const TIppiImageMode mode : kByteModes) {
    constexpr int kSide = 17;
    TIppiImage image(mode), dest;
    fillRandom(image, kSide, kSide, 42);
    image.RotateCenter(dest, 90, (kSide - 1) / 2.0, (kSide - 1) / 2.0);
    EXPECT_TRUE(pixelsAre(dest, kSide, kSide, [&](int x, int y) { return pixelAt(image, y, kSide - 1 - x); }));
  }
}

TEST(Rotate, TurnsAboutTheTruncatedMiddleOfTheBuffer) {
  for (const auto& [width, height] : {std::pair{20, 14}, {21, 15}, {20, 15}, {1, 1}, {2, 1}}) {
    for (const double angle : {-33.0, 5.5, 90.0, 180.0, 271.0}) {
      TIppiImage image(imRGB24), byMiddle, byPoint;
      fillRandom(image, width, height, 43);
      image.Rotate(byMiddle, angle);
      image.RotateCenter(byPoint, angle, width / 2, (height - 1) - height / 2);
      EXPECT_TRUE(samePicture(byMiddle, byPoint)) << width << 'x' << height << ' ' << angle;
      EXPECT_EQ(byMiddle.Width, width);
      EXPECT_EQ(byMiddle.Height, height);
      EXPECT_TRUE(soundImage(byMiddle));
    }
  }
}

TEST(Rotate, AreasThatNothingReachesStayAsAllocated) {
  TIppiImage image(imRGBA32), dest;
  fillRandom(image, 40, 10, 44);
  image.Rotate(dest, 90);
  EXPECT_EQ(pixelAt(dest, 0, 5), (Pixel{0, 0, 0, 255}));
  EXPECT_EQ(pixelAt(dest, 39, 5), (Pixel{0, 0, 0, 255}));
}

TEST(Rotate, FloatAndEmptyPicturesAndNumbersThatAreNoneAreSafe) {
  TIppiImage floats(imRGB32f), empty(imRGB24), image(imGray8), dest;
  fillRandom(floats, 6, 6, 45);
  floats.Rotate(dest, 30);
  EXPECT_EQ(dest.Mode, imRGB32f);
  EXPECT_EQ(dest.PixelsF[0], 0.0F);
  empty.Rotate(dest, 30);
  EXPECT_EQ(dest.Pixels, nullptr);
  fillRandom(image, 12, 12, 46);
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  for (const double odd : {std::nan(""), kInfinity, -kInfinity, 1e300, -1e18, 1e10}) {
    image.Rotate(dest, odd);
    image.RotateCenter(dest, 20, odd, 3);
    image.RotateCenter(dest, 20, 3, odd);
    EXPECT_EQ(dest.Width, 12);
  }
}

TEST(Rotate, IntoItselfWorksAsThroughATemporary) {
  TIppiImage image(imRGBA32), expected;
  fillRandom(image, 25, 19, 47);
  image.RotateCenter(expected, 12.5, 3, 4);
  image.RotateCenter(image, 12.5, 3, 4);
  EXPECT_TRUE(samePicture(image, expected));
}

}  // namespace
