// The local matching of levels and the blur in it.
#include "image/gaussian_blur.h"
#include "tests/image/level_reference.h"
#include "tests/image/pictures.h"

namespace {

void fillPlain(TIppiImage& image, int width, int height, Pixel pixel) {
  image.AllocNew(width, height);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) std::memcpy(at(image, x, y), pixel.data(), 4);
  }
}

void fillMeans(TIppiImage& means, int width, int height, float value) {
  means.Mode = imRGBA32f;
  means.AllocNew(width, height);
  std::fill_n(means.PixelsF, means.SizeBytes / 4, value);
}

// Smooth, as pictures are, with alpha from 0 to 255.
void fillSmooth(TIppiImage& image, int width, int height, double phase) {
  image.AllocNew(width, height);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      const double u = 6.0 * x / width + phase, v = 5.0 * y / height - phase;
      const double waves[4] = {std::sin(u), std::cos(u + v), std::sin(v) * std::cos(u), std::sin(u * v)};
      for (int k = 0; k < 4; ++k) at(image, x, y)[k] = static_cast<unsigned char>(128 + 127 * waves[k]);
    }
  }
}

struct Reach {
  float sigma;
  int pixels;  // to either side
};

class BlurReach : public testing::TestWithParam<Reach> {};

// 0.8333 and 2 are those of an overlay 10 pixels wide, 1.6667 and 4 of one of 20.
INSTANTIATE_TEST_SUITE_P(Sigmas, BlurReach,
                         testing::Values(Reach{10 / 12.0F, 1}, Reach{2.0F, 1}, Reach{20 / 12.0F, 1}, Reach{4.0F, 3},
                                         Reach{2.34F, 2}, Reach{3.0F, 2}, Reach{3.1F, 2}, Reach{5.0F, 4},
                                         Reach{20.0F, 15}, Reach{0.0001F, 1}));

TEST_P(BlurReach, FollowsSigma) {
  const auto [sigma, reach] = GetParam();
  TIppiImage point(imRGBA32), blurred;
  fillPlain(point, 41, 5, {0, 0, 0, 200});
  for (int y = 0; y < 5; ++y) at(point, 20, y)[1] = 255;
  ApplyGaussianBlurAC4R(point, blurred, sigma);
  ASSERT_EQ(blurred.Mode, imRGBA32f);
  ASSERT_TRUE(blurred.Width == 41 && blurred.Height == 5 && soundImage(blurred));
  for (int x = 0; x < 41; ++x) {
    const float* pixel = blurred.PixelsF + 2 * (blurred.Step / 4) + 4 * x;
    // Of a very small sigma only the middle has a weight that single precision can hold.
    const bool reached = std::abs(x - 20) <= (sigma < 0.01F ? 0 : reach);
    EXPECT_EQ(pixel[1] > 0.0F, reached) << "column " << x;
    EXPECT_TRUE(pixel[0] == 0.0F && pixel[2] == 0.0F && pixel[3] == 0.0F) << "column " << x;
  }
}

TEST(GaussianBlur, BlursThreeChannelsAndGoesIntoItsSource) {
  TIppiImage image(imRGBA32), result;
  fillRandom(image, 53, 38, 11);
  ApplyGaussianBlurAC4R(image, result, 7.5F);
  for (int c = 0; c < 3; ++c) {
    const GaussPlane<double> expected = blurredChannel(image, c, 7.5);
    for (int i = 0; i < 53 * 38; ++i) {
      const double value = static_cast<double>(result.PixelsF[i / 53 * (result.Step / 4) + 4 * (i % 53) + c]);
      ASSERT_NEAR(value, expected.values[static_cast<std::size_t>(i)], 1e-3);
    }
  }
  ApplyGaussianBlurAC4R(image, image, 7.5F);
  ASSERT_EQ(image.Mode, imRGBA32f);
  EXPECT_EQ(0, std::memcmp(image.PixelsF, result.PixelsF, static_cast<std::size_t>(result.SizeBytes)));
}

TEST(GaussianBlur, OfNothingIsNothing) {
  TIppiImage empty(imRGBA32), result;
  ApplyGaussianBlurAC4R(empty, result, 3.0F);
  EXPECT_EQ(result.Pixels, nullptr);
  TIppiImage image(imRGBA32);
  fillRandom(image, 5, 5, 12);
  for (const float sigma : {0.0F, -1.0F, 1e30F, std::nanf("")}) {
    ApplyGaussianBlurAC4R(image, result, sigma);
    EXPECT_EQ(result.PixelsF[0], 0.0F) << sigma;
  }
}

TEST(AdjustLevelsWithAlpha, MatchesTheDirectComputation) {
  for (const auto& [width, height] : {std::pair{60, 41}, {10, 12}, {20, 3}, {1, 1}, {2, 30}, {133, 1}}) {
    TIppiImage image(imRGBA32), other(imRGBA32), before;
    fillSmooth(image, width, height, 0.3);
    fillSmooth(other, width, height, 2.1);
    before.Assign(image);
    ASSERT_EQ(image.AdjustLevelsWithAlpha(other), 0);
    for (int c = 0; c < 3; ++c) {
      const GaussPlane<double> expected = matchedChannel(other, before, c);
      for (int i = 0; i < width * height; ++i) {
        const unsigned char value = image.Pixels[i / width * image.Step + 4 * (i % width) + c];
        ASSERT_NEAR(value, expected.values[static_cast<std::size_t>(i)], 0.51) << width << " by " << height;
      }
    }
    EXPECT_TRUE(soundImage(image));
  }
}

TEST(AdjustLevelsWithAlpha, RaisesAlphaByTheKnownSteps) {
  constexpr int kKnown[][2] = {{0, 0}, {1, 3}, {4, 14}, {12, 40}, {75, 253}, {76, 255}, {255, 255}};
  for (const auto& [from, to] : kKnown) {
    TIppiImage image(imRGBA32), other(imRGBA32);
    fillPlain(image, 6, 6, {10, 20, 30, static_cast<unsigned char>(from)});
    fillPlain(other, 6, 6, {10, 20, 30, 9});
    ASSERT_EQ(image.AdjustLevelsWithAlpha(other), 0);
    EXPECT_EQ(pixelAt(image, 3, 3), (Pixel{10, 20, 30, static_cast<unsigned char>(to)}));
  }
}

TEST(AdjustLevelsWithAlpha, LeavesTheColoursOfItsOwnCopyAndOfBlackOnBlack) {
  TIppiImage image(imRGBA32), copy, black(imRGBA32), ground(imRGBA32);
  fillRandom(image, 31, 22, 13);
  copy.Assign(image);
  ASSERT_EQ(image.AdjustLevelsWithAlpha(copy), 0);
  for (int i = 0; i < 31 * 22 * 3; ++i) {
    const int x = i / 3 % 31, y = i / 93, c = i % 3;
    ASSERT_EQ(at(image, x, y)[c], at(copy, x, y)[c]);
  }
  fillPlain(black, 9, 9, {0, 0, 0, 50});
  fillPlain(ground, 9, 9, {0, 0, 0, 0});
  ASSERT_EQ(black.AdjustLevelsWithAlpha(ground), 0);
  EXPECT_EQ(pixelAt(black, 4, 4)[0], 0);
}

// On black ground everything goes to black, and on ground brighter than it everything that is not black to white.
TEST(AdjustLevelsWithAlpha, SaturatesAtBothEnds) {
  TIppiImage image(imRGBA32), bright(imRGBA32), dark(imRGBA32);
  fillPlain(dark, 12, 12, {0, 0, 0, 255});
  fillPlain(bright, 12, 12, {200, 200, 200, 255});
  fillPlain(image, 12, 12, {100, 1, 0, 130});
  *at(image, 6, 6) = 220;
  ASSERT_EQ(image.AdjustLevelsWithAlpha(bright), 0);
  EXPECT_EQ(pixelAt(image, 6, 6), (Pixel{255, 200, 0, 255}));
  ASSERT_EQ(image.AdjustLevelsWithAlpha(dark), 0);
  EXPECT_EQ(pixelAt(image, 3, 3), (Pixel{0, 0, 0, 255}));
}

TEST(AdjustLevelsWithAlpha, RefusesOtherModes) {
  for (const TIppiImageMode mode : kAllModes) {
    if (mode == imRGBA32) continue;
    TIppiImage image(mode), colour(imRGBA32), before;
    fillRandom(image, 8, 8, 14);
    fillRandom(colour, 8, 8, 15);
    before.Assign(colour);
    EXPECT_EQ(image.AdjustLevelsWithAlpha(colour), -1);
    EXPECT_EQ(colour.AdjustLevelsWithAlpha(image), -1);
    EXPECT_TRUE(samePicture(colour, before));
  }
}

TEST(AdjustLevelsWithAlpha, SizesThatDifferStayInside) {
  TIppiImage image(imRGBA32), other(imRGBA32), before, empty(imRGBA32);
  for (const auto& [width, height] : {std::pair{5, 30}, {30, 5}, {5, 5}, {40, 40}}) {
    fillRandom(image, 17, 13, 16);
    before.Assign(image);
    fillRandom(other, width, height, 17);
    ASSERT_EQ(image.AdjustLevelsWithAlpha(other), 0);
    EXPECT_TRUE(soundImage(image));
    // Stored rows beyond the other's keep their colours.
    for (int row = height; row < 13; ++row) EXPECT_EQ(image.Pixels[row * image.Step], before.Pixels[row * image.Step]);
  }
  EXPECT_EQ(image.AdjustLevelsWithAlpha(empty), 0);
  EXPECT_EQ(empty.AdjustLevelsWithAlpha(image), 0);
  EXPECT_EQ(empty.Pixels, nullptr);
}

// Alpha chooses between the small and the large reach: means that give the ratios 2 and 4.
TEST(AdjustLevelsWithAlphaSingleChannel, MixesTheMeansByAlpha) {
  constexpr int kKnown[][2] = {{0, 100}, {255, 50}, {51, 83}, {102, 71}};  // alpha, 200 divided
  for (const auto& [alpha, divided] : kKnown) {
    TIppiImage image(imRGBA32), other(imRGBA32), otherSmall, imageSmall, otherLarge, imageLarge;
    fillPlain(image, 3, 3, {200, 200, 200, static_cast<unsigned char>(alpha)});
    fillPlain(other, 3, 3, {});
    fillMeans(otherSmall, 3, 3, 10.0F);
    fillMeans(imageSmall, 3, 3, 20.0F);
    fillMeans(otherLarge, 3, 3, 10.0F);
    fillMeans(imageLarge, 3, 3, 40.0F);
    for (const int channel : {1, -1, 3, 4}) {
      TIppiImage::AdjustLevelsWithAlphaSingleChannel(other, image, channel, 0.5F, otherSmall, imageSmall, otherLarge,
                                                     imageLarge);
    }
    const Pixel expected = {200, static_cast<unsigned char>(divided), 200, static_cast<unsigned char>(alpha)};
    EXPECT_EQ(pixelAt(image, 2, 2), expected);
  }
}

TEST(AdjustLevelsWithAlphaSingleChannel, TakesTheLastColumnAndRowOfSmallerMeans) {
  TIppiImage image(imRGBA32), other(imRGBA32), small, large, none;
  fillPlain(image, 6, 5, {200, 0, 0, 255});
  fillPlain(other, 6, 5, {});
  fillMeans(small, 2, 2, 10.0F);
  fillMeans(large, 6, 5, 20.0F);
  small.PixelsF[small.Step / 4 + 4] = 5.0F;
  TIppiImage::AdjustLevelsWithAlphaSingleChannel(other, image, 0, 0.0F, small, large, small, large);
  EXPECT_EQ(image.Pixels[0], 100) << "the first pixel has a mean of its own";
  EXPECT_EQ(image.Pixels[4 * image.Step + 5 * 4], 50) << "the last one that of the last pixel";
  TIppiImage::AdjustLevelsWithAlphaSingleChannel(other, image, 0, 0.0F, small, none, small, large);
  EXPECT_EQ(image.Pixels[0], 100) << "without means nothing happens";
}

}  // namespace
