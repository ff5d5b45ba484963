// The global matching of levels.
#include <cmath>

#include "tests/image/pictures.h"

namespace {

// Integer mean over the central thirds of an image of w by h pixels, as far as `image` has them; rows from the bottom.
int middleMean(const TIppiImage& image, int channel, int w, int h) {
  long sum = 0, count = 0;
  for (int x = w / 3; x <= 2 * w / 3 && x < std::min(w, image.Width); ++x) {
    for (int row = h - 2 * h / 3; row <= h - h / 3 && row < image.Height; ++row, ++count) {
      sum += at(image, x, image.Height - 1 - row)[channel];
    }
  }
  return std::max(static_cast<int>(sum / std::max(count, 1L)), 1);
}

int middleMean(const TIppiImage& image, int channel) { return middleMean(image, channel, image.Width, image.Height); }

int divided(int value, int mean, int wanted) {
  const float ratio = static_cast<float>(mean) / static_cast<float>(wanted);
  return std::min(static_cast<int>(std::nearbyint(value / std::sqrt(static_cast<double>(ratio * ratio)))), 255);
}

void scale(TIppiImage& image, int percent) {
  for (int i = 0; i < image.SizeBytes; ++i)
    image.Pixels[i] = static_cast<unsigned char>(image.Pixels[i] * percent / 100);
}

class GlobalLevels : public testing::TestWithParam<TIppiImageMode> {};

INSTANTIATE_TEST_SUITE_P(Modes, GlobalLevels, testing::ValuesIn(kByteModes),
                         [](const auto& instance) { return modeName(instance.param); });

TEST_P(GlobalLevels, FollowTheMiddleOfTheReference) {
  const int colours = std::min(channelsOf(GetParam()), 3);
  for (const auto& [width, height] : {std::pair{3, 3}, {1, 3}, {2, 4}, {17, 5}, {30, 31}, {8, 100}}) {
    TIppiImage reference(GetParam()), target(GetParam()), before;
    fillRandom(reference, width, height, 21);
    fillRandom(target, width, height, 22);
    scale(reference, 60);
    before.Assign(target);
    target.AdjustLevelsWith(reference);
    const auto expected = [&](int x, int y) {
      Pixel pixel = pixelAt(before, x, y);
      for (int c = 0; c < colours; ++c) {
        unsigned char& value = pixel[static_cast<std::size_t>(c)];
        value = static_cast<unsigned char>(divided(value, middleMean(before, c), middleMean(reference, c)));
      }
      return pixel;
    };
    ASSERT_TRUE(pixelsAre(target, width, height, expected)) << width << " by " << height;
    EXPECT_TRUE(soundImage(target));
  }
}

TEST_P(GlobalLevels, RefuseFewerThanThreeRows) {
  for (const int height : {1, 2}) {
    TIppiImage reference(GetParam()), target(GetParam()), before;
    fillRandom(reference, 9, height, 24);
    fillRandom(target, 9, 9, 25);
    before.Assign(target);
    target.AdjustLevelsWith(reference);
    EXPECT_TRUE(samePicture(target, before));
  }
}

// Pixels that only one of the two has stay out of the means and as they are.
TEST_P(GlobalLevels, AreClippedToWhatBothHave) {
  const int colours = std::min(channelsOf(GetParam()), 3);
  for (const auto& [width, height] : {std::pair{4, 4}, {30, 4}, {4, 30}, {11, 11}, {1, 1}, {60, 60}}) {
    TIppiImage reference(GetParam()), target(GetParam()), before;
    fillRandom(reference, 18, 18, 26);
    fillRandom(target, width, height, 27);
    before.Assign(target);
    target.AdjustLevelsWith(reference);
    EXPECT_TRUE(soundImage(target));
    // What the target lacks, the reference's mean leaves out too.
    TIppiImage common(GetParam());
    common.AllocNew(std::min(width, 18), std::min(height, 18));
    for (int row = 0; row < common.Height; ++row) {
      std::copy_n(reference.Pixels + row * reference.Step, common.Width * channelsOf(GetParam()),
                  common.Pixels + row * common.Step);
    }
    EXPECT_TRUE(pixelsAre(target, width, height,
                          [&](int x, int y) {
                            Pixel expected = pixelAt(before, x, y);
                            for (int c = 0; c < colours && x < 18 && height - 1 - y < 18; ++c) {
                              const auto k = static_cast<std::size_t>(c);
                              expected[k] = static_cast<unsigned char>(
                                  divided(expected[k], middleMean(before, c, 18, 18), middleMean(common, c, 18, 18)));
                            }
                            return expected;
                          }))
        << width << " by " << height;
  }
}

TEST(GlobalLevelsOfOneChannel, ABlackMiddleCountsAsOne) {
  TIppiImage black(imGray8), target(imGray8);
  black.AllocNew(9, 9);
  target.AllocNew(9, 9);
  std::fill_n(target.Pixels, target.SizeBytes, 100);
  target.Pixels[0] = 255;
  target.Pixels[1] = 49;
  TIppiImage::AdjustLevelsSingleChannel(black, target, 0);
  EXPECT_EQ(target.Pixels[0], 3);
  EXPECT_EQ(target.Pixels[1], 0);
  EXPECT_EQ(target.Pixels[4 * target.Step + 4], 1);
  // The other way round: everything above 2 becomes white.
  std::fill_n(target.Pixels, target.SizeBytes, 100);
  black.Pixels[0] = 2;
  black.Pixels[1] = 3;
  TIppiImage::AdjustLevelsSingleChannel(target, black, 0);
  EXPECT_EQ(black.Pixels[0], 200);
  EXPECT_EQ(black.Pixels[1], 255);
  EXPECT_EQ(black.Pixels[2], 0);
}

TEST(GlobalLevelsOfOneChannel, TakeTheChannelFromEachImagesOwnLayout) {
  TIppiImage reference(imRGB24), target(imRGBA32), before;
  fillRandom(reference, 12, 12, 28);
  fillRandom(target, 12, 12, 29);
  before.Assign(target);
  target.AdjustLevelsSingleChannelTest(reference, 2);
  EXPECT_TRUE(pixelsAre(target, 12, 12, [&](int x, int y) {
    Pixel pixel = pixelAt(before, x, y);
    pixel[2] = static_cast<unsigned char>(divided(pixel[2], middleMean(before, 2), middleMean(reference, 2)));
    return pixel;
  }));
}

TEST(GlobalLevelsOfOneChannel, RefuseWhatAnImageLacks) {
  for (const TIppiImageMode mode : kAllModes) {
    TIppiImage image(mode), colour(imRGBA32), gray(imGray8), empty(mode), before;
    fillRandom(image, 6, 6, 30);
    fillRandom(colour, 6, 6, 31);
    fillRandom(gray, 6, 6, 32);
    before.Assign(colour);
    for (const int channel : {-1, 4, channelsOf(mode)}) TIppiImage::AdjustLevelsSingleChannel(image, colour, channel);
    if (isFloat(mode)) colour.AdjustLevelsWith(image);
    colour.AdjustLevelsWith(empty);
    EXPECT_TRUE(samePicture(colour, before)) << modeName(mode);
    empty.AdjustLevelsWith(colour);
    image.AdjustLevelsWith(gray);
  }
}

}  // namespace
