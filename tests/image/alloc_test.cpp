#include <climits>
#include <stdexcept>

#include "tests/image/pictures.h"

namespace {

class AllocInMode : public testing::TestWithParam<TIppiImageMode> {};

// Bytes a pixel, from the table of the layouts.
int pixelBytes(TIppiImageMode mode) {
  constexpr int kBytes[] = {1, 3, 4, 4, 12, 16};
  return kBytes[mode];
}

TEST_P(AllocInMode, RowsHaveRoomForThirtyOnePixelsMoreRoundedDownToFour) {
  TIppiImage image(GetParam());
  for (int width = 1; width < 140; ++width) {
    image.AllocNew(width, 3);
    EXPECT_EQ(image.Step, (width + 31) / 4 * 4 * pixelBytes(GetParam())) << width;
    EXPECT_EQ(image.SizeBytes, 3 * image.Step);
    EXPECT_EQ(image.Mode, GetParam());
    ASSERT_TRUE(soundImage(image));
  }
}

TEST_P(AllocInMode, BufferIsZeroButForOpaqueAlphaOfThePixels) {
  TIppiImage image(GetParam());
  fillRandom(image, 9, 5, 1);
  image.AllocNew(5, 4);
  const bool alpha = GetParam() == imRGBA32;
  for (int i = 0; i < image.SizeBytes; ++i) {
    const bool alphaOfPixel = alpha && i % 4 == 3 && i % image.Step < 20;
    ASSERT_EQ(image.Pixels[i], alphaOfPixel ? 255 : 0) << i;
  }
}

TEST_P(AllocInMode, SizesWithoutPixelsAreEmptyButKeepTheStepRule) {
  TIppiImage image(GetParam());
  image.AllocNew(0, 0);
  EXPECT_EQ(image.Step, 28 * pixelBytes(GetParam()));
  EXPECT_EQ(image.Pixels, nullptr);
  image.AllocNew(7, 0);
  EXPECT_EQ(image.Width, 7);
  EXPECT_EQ(image.Pixels, nullptr);
  for (const auto& [width, height] : {std::pair{-1, 5}, {5, -1}, {INT_MIN, INT_MIN}, {INT_MAX, -1}}) {
    image.AllocNew(width, height);
    EXPECT_EQ(image.Width, 0);
    EXPECT_EQ(image.Height, 0);
    EXPECT_EQ(image.Pixels, nullptr);
  }
}

TEST_P(AllocInMode, RefusesWhatTheLimitsForbidAndIsEmptyAfterwards) {
  TIppiImage image(GetParam());
  for (const auto& [width, height] : {std::pair{65536, 1}, {1, 65536}, {INT_MAX, INT_MAX}, {65535, 65535}}) {
    fillRandom(image, 3, 3, 2);
    EXPECT_THROW(image.AllocNew(width, height), std::length_error) << width << 'x' << height;
    EXPECT_EQ(image.Pixels, nullptr);
    EXPECT_EQ(image.PixelsF, nullptr);
    EXPECT_EQ(image.Width, 0);
    EXPECT_EQ(image.SizeBytes, 0);
  }
  image.AllocNew(65535, 1);
  EXPECT_NE(image.Pixels, nullptr);
  image.AllocNew(1, 65535);
  EXPECT_NE(image.Pixels, nullptr);
}

INSTANTIATE_TEST_SUITE_P(Modes, AllocInMode, testing::ValuesIn(kAllModes),
                         [](const auto& mode) { return modeName(mode.param); });

TEST(Alloc, TheLargestBufferIsJustBelowTwoGibibytes) {
  TIppiImage image(imGray8);
  // A step of 65,536: 32,767 rows take 2,147,418,112 bytes, one more 2^31.
  image.AllocNew(65508, 32767);
  EXPECT_EQ(image.Step, 65536);
  EXPECT_EQ(image.SizeBytes, 2147418112);
  EXPECT_THROW(image.AllocNew(65508, 32768), std::length_error);
}

TEST(Alloc, FreeingKeepsTheSizeFields) {
  TIppiImage image(imRGB24);
  image.FreeImage();
  image.AllocNew(10, 4);
  const int step = image.Step;
  image.FreeImage();
  image.FreeImage();
  EXPECT_EQ(image.Pixels, nullptr);
  EXPECT_EQ(image.PixelsF, nullptr);
  EXPECT_EQ(image.Width, 10);
  EXPECT_EQ(image.Height, 4);
  EXPECT_EQ(image.Step, step);
  EXPECT_EQ(image.Mode, imRGB24);
}

}  // namespace
