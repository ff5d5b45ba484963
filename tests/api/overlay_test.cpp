// An overlay on its background, whose colours it takes on.
#include <climits>
#include <cmath>
#include <cstring>

#include "image/TIppiImage.h"
#include "library_fixture.h"

namespace {

void toImage(const TPicture& picture, TIppiImage& image) {
  image.AllocNew(picture.width, picture.height);
  for (int y = 0; y < picture.height; ++y) {
    std::memcpy(image.Pixels + (picture.height - 1 - y) * image.Step, picture.at(0, y),
                static_cast<std::size_t>(4 * picture.width));
  }
}

// Smooth, with alpha from 0 to 255.
TPicture smoothPicture(int width, int height, double phase) {
  TPicture picture = PlainPicture(width, height, 4, 0);
  for (std::size_t i = 0; i < picture.pixels.size(); ++i) {
    const int x = static_cast<int>(i / 4) % width, y = static_cast<int>(i / 4) / width;
    const double wave = std::sin(phase * static_cast<double>(i % 4 + 1) + 0.11 * x) * std::cos(phase + 0.09 * y);
    picture.pixels[i] = static_cast<unsigned char>(128 + 127 * wave);
  }
  return picture;
}

class Overlay : public LibraryTest {
 protected:
  // The steps on images: the covered part is cut out of the background, matched and put over it.
  static void expectComposition(const TPicture& overlay, int x, int y, const TPicture& back, const TPicture& result) {
    TIppiImage image(imRGBA32), ground(imRGBA32), covered, expected(imRGBA32);
    toImage(overlay, image);
    toImage(back, ground);
    toImage(back, expected);
    ground.CopyTo(covered, x, y, x + overlay.width - 1, y + overlay.height - 1);
    image.AdjustLevelsWithAlpha(covered);
    image.PutOver(ground, expected, x, y);
    for (int v = 0; v < back.height; ++v) {
      ASSERT_EQ(0, std::memcmp(result.at(0, v), expected.Pixels + (back.height - 1 - v) * expected.Step,
                               static_cast<std::size_t>(4 * back.width)))
          << "row " << v << " at " << x << ", " << y;
    }
  }

  static TPicture opaque(TPicture picture) {
    for (std::size_t i = 3; i < picture.pixels.size(); i += 4) picture.pixels[i] = 255;
    return picture;
  }
};

TEST_F(Overlay, TakesTheColoursOfWhatItCovers) {
  const TPicture picture = smoothPicture(36, 27, 0.7), ground = opaque(smoothPicture(70, 50, 2.3));
  const HImage image = ImageOf(picture), back = ImageOf(ground), result = EmptyImage();
  for (const auto& [x, y] : {std::pair{10, 12}, {0, 0}, {-9, 5}, {50, 40}, {20, -14}, {69, 49}, {-36, 0}, {200, 0}}) {
    ASSERT_EQ(VIZL_PutImageAdjustColors(image, x, y, back, result), VIZLE_OK);
    expectComposition(picture, x, y, ground, PictureOf(result, 4));
  }
  EXPECT_TRUE(PictureOf(image, 4) == picture) << "the overlay stays";
  EXPECT_TRUE(PictureOf(back, 4) == ground) << "the background stays";
  const TPicture small = opaque(smoothPicture(20, 18, 0.2));
  ASSERT_EQ(VIZL_PutImageAdjustColors(image, -9, -5, ImageOf(small), result), VIZLE_OK);
  expectComposition(picture, -9, -5, small, PictureOf(result, 4));
}

TEST_F(Overlay, ResultMayBeAnyOfTheHandles) {
  const TPicture picture = RandomPicture(30, 20, 4, 1), ground = RandomPicture(40, 30, 4, 2);
  const auto compose = [&](bool intoImage, bool intoBack) {
    const HImage image = ImageOf(picture), back = ImageOf(ground);
    const HImage result = intoImage ? image : intoBack ? back : EmptyImage();
    EXPECT_EQ(VIZL_PutImageAdjustColors(image, 5, -3, back, result), VIZLE_OK);
    return PictureOf(result, 4);
  };
  EXPECT_TRUE(compose(true, false) == compose(false, false));
  EXPECT_TRUE(compose(false, true) == compose(false, false));

  const HImage alone = ImageOf(ground), image = ImageOf(ground), back = ImageOf(ground), result = EmptyImage();
  ASSERT_EQ(VIZL_PutImageAdjustColors(alone, 7, 2, alone, alone), VIZLE_OK);
  ASSERT_EQ(VIZL_PutImageAdjustColors(image, 7, 2, back, result), VIZLE_OK);
  EXPECT_TRUE(PictureOf(alone, 4) == PictureOf(result, 4));
}

TEST_F(Overlay, FarAwayLeavesTheBackground) {
  const TPicture ground = RandomPicture(40, 30, 4, 3);
  const HImage image = ImageOf(RandomPicture(30, 20, 4, 4)), back = ImageOf(ground);
  for (const int x : {INT_MIN, INT_MIN + 29, 0, INT_MAX - 29, INT_MAX}) {
    for (const int y : {INT_MIN, INT_MAX - 20, INT_MAX}) {
      const HImage result = EmptyImage();
      ASSERT_EQ(VIZL_PutImageAdjustColors(image, x, y, back, result), VIZLE_OK);
      EXPECT_TRUE(PictureOf(result, 4) == ground) << x << ", " << y;
    }
  }
}

TEST_F(Overlay, RefusesPicturesWithoutAlphaAndBadHandles) {
  const HImage colour = ImageOf(RandomPicture(20, 20, 3)), alpha = ImageOf(RandomPicture(20, 20, 4));
  const HImage gray = ImageOf(RandomPicture(20, 20, 1)), empty = EmptyImage();
  const TPicture before = RandomPicture(9, 9, 3, 7);
  const HImage result = ImageOf(before);
  for (const HImage bad : {colour, gray, empty, HImage{9999}}) {
    EXPECT_EQ(VIZL_PutImageAdjustColors(bad, 1, 1, alpha, result), VIZLE_INVALID_ARGUMENT);
    EXPECT_EQ(VIZL_PutImageAdjustColors(alpha, 1, 1, bad, result), VIZLE_INVALID_ARGUMENT);
  }
  EXPECT_EQ(VIZL_PutImageAdjustColors(alpha, 1, 1, alpha, 9999), VIZLE_INVALID_ARGUMENT);
  EXPECT_TRUE(PictureOf(result, 3) == before) << "nothing is written";
}

TEST_F(Overlay, OfNoPixelsChangesNothing) {
  const TPicture ground = RandomPicture(12, 11, 4, 5);
  const HImage none = EmptyImage(), back = ImageOf(ground), result = EmptyImage();
  ASSERT_EQ(VIZL_CopyRect(back, 5, 5, 4, 4, none), VIZLE_OK);
  for (const int place : {2, INT_MIN, INT_MAX}) {
    ASSERT_EQ(VIZL_PutImageAdjustColors(none, place, place, back, result), VIZLE_OK);
    EXPECT_TRUE(PictureOf(result, 4) == ground);
  }
  ASSERT_EQ(VIZL_PutImageAdjustColors(back, 2, 2, none, result), VIZLE_OK);
  EXPECT_EQ(WidthOf(result), 0);
}

}  // namespace
