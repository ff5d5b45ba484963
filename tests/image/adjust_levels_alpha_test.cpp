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
