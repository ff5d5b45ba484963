#include <algorithm>
#include <climits>
#include <stdexcept>

#include "tests/image/pictures.h"

namespace {

struct Rect {
  int x1, y1, x2, y2;
};

bool misses(const TIppiImage& image, const Rect& r) {
  return r.x2 < 0 || r.y2 < 0 || r.x1 >= image.Width || r.y1 >= image.Height;
}

Pixel expectedPixel(const TIppiImage& image, int x, int y, bool replicate) {
  const bool inside = x >= 0 && y >= 0 && x < image.Width && y < image.Height;
  if (!inside && !replicate) return {};
  return pixelAt(image, std::clamp(x, 0, image.Width - 1), std::clamp(y, 0, image.Height - 1));
}

void checkCut(TIppiImage& image, const Rect& r, bool replicate) {
  SCOPED_TRACE(testing::Message() << modeName(image.Mode) << ' ' << r.x1 << ' ' << r.y1 << ' ' << r.x2 << ' ' << r.y2);
  TIppiImage dest(imGray8), blank(image.Mode);
  if (replicate) {
    image.CopyToReplicateBorder(dest, r.x1, r.y1, r.x2, r.y2);
  } else {
    image.CopyTo(dest, r.x1, r.y1, r.x2, r.y2);
  }
  ASSERT_EQ(dest.Mode, image.Mode);
  ASSERT_EQ(dest.Width, r.x2 - r.x1 + 1);
  ASSERT_EQ(dest.Height, r.y2 - r.y1 + 1);
  ASSERT_TRUE(soundImage(dest));
  blank.AllocNew(dest.Width, dest.Height);
  if (misses(image, r)) {
    ASSERT_TRUE(samePicture(dest, blank));
    return;
  }
  ASSERT_TRUE(pixelsAre(dest, r.x2 - r.x1 + 1, r.y2 - r.y1 + 1,
                        [&](int x, int y) { return expectedPixel(image, r.x1 + x, r.y1 + y, replicate); }));
}

TEST(CopyTo, CutsEveryRectangleLikeTheSlowReference) {
  std::mt19937 random(21);
  const auto number = [&](int low, int high) {
    return low + static_cast<int>(random() % static_cast<unsigned>(high - low + 1));
  };
  for (int i = 0; i < 1500; ++i) {
    TIppiImage image(kByteModes[i % 3]);
    fillRandom(image, number(1, 24), number(1, 24), static_cast<unsigned>(i));
    // Now and then far outside.
    const int shift = i % 10 == 0 ? 1000000000 : 0;
    const int x1 = number(-40, 40) + (i % 20 == 0 ? -shift : shift), y1 = number(-40, 40) + shift;
    checkCut(image, {x1, y1, x1 + number(0, 50), y1 + number(0, 50)}, i % 2 == 0);
  }
}

TEST(CopyTo, CornersAtTheEndsOfTheNumbersDoNotOverflow) {
  TIppiImage image(imRGBA32), dest, blank(imRGBA32);
  fillRandom(image, 10, 10, 22);
  blank.AllocNew(10, 10);
  const auto cut = [&](const Rect& r) {
    image.CopyTo(dest, r.x1, r.y1, r.x2, r.y2);
    const int width = dest.Width, height = dest.Height;
    image.CopyToReplicateBorder(dest, r.x1, r.y1, r.x2, r.y2);
    EXPECT_EQ(dest.Width, width);
    EXPECT_EQ(dest.Height, height);
  };
  cut({INT_MAX - 9, INT_MAX - 9, INT_MAX, INT_MAX});
  EXPECT_TRUE(samePicture(dest, blank));
  cut({INT_MIN, INT_MIN, INT_MIN + 9, INT_MIN + 9});
  EXPECT_TRUE(samePicture(dest, blank));
  for (const Rect& r : {Rect{INT_MAX, 0, INT_MIN, 9}, {0, INT_MAX, 9, INT_MIN}, {5, 5, 3, 9}, {2, 9, 5, -3}}) {
    cut(r);
    EXPECT_EQ(dest.Width, 0);
    EXPECT_EQ(dest.Height, 0);
    EXPECT_EQ(dest.Pixels, nullptr);
  }
  for (const Rect& r : {Rect{INT_MIN, INT_MIN, INT_MAX, INT_MAX}, {0, 0, 65535, 0}, {-65535, 0, 0, 0}}) {
    EXPECT_THROW(cut(r), std::length_error);
  }
}

TEST(CopyTo, OfEmptyFreedOrFloatPicturesLeavesTheDestinationAsAllocated) {
  TIppiImage empty(imRGB24), freed(imRGBA32), floats(imRGB32f), dest;
  fillRandom(freed, 8, 8, 23);
  freed.FreeImage();
  fillRandom(floats, 8, 8, 24);
  for (TIppiImage* source : {&empty, &freed, &floats}) {
    TIppiImage blank(source->Mode);
    blank.AllocNew(6, 6);
    source->CopyTo(dest, -2, 1, 3, 6);
    EXPECT_EQ(dest.Width, 6);
    EXPECT_EQ(std::memcmp(dest.Pixels, blank.Pixels, static_cast<std::size_t>(blank.SizeBytes)), 0);
    source->CopyToReplicateBorder(dest, 100, -100, 105, -95);
    EXPECT_EQ(std::memcmp(dest.Pixels, blank.Pixels, static_cast<std::size_t>(blank.SizeBytes)), 0);
  }
}

TEST(CopyTo, IntoItselfWorksAsThroughATemporary) {
  for (const TIppiImageMode mode : kByteModes) {
    TIppiImage image(mode), expected, kept;
    fillRandom(image, 12, 9, 25);
    kept.Assign(image);
    image.CopyToReplicateBorder(expected, -3, 2, 14, 11);
    image.CopyToReplicateBorder(image, -3, 2, 14, 11);
    EXPECT_TRUE(samePicture(image, expected));
    // With a kept destination the output has the image's own size.
    kept.CopyTo(expected, 2, 1, 13, 9);
    kept.CopyTo(kept, 2, 1, 13, 9, true);
    EXPECT_TRUE(samePicture(kept, expected));
  }
}

// The rectangle 12 by 12 into kept buffers that are smaller, equal and larger, and of other modes: nothing
// may be read or written outside (the sanitizers watch), and the equal one must hold the cut.
TEST(CopyTo, AKeptDestinationIsUsedAsItIs) {
  for (const int side : {1, 5, 11, 12, 13, 40}) {
    for (const TIppiImageMode mode : kAllModes) {
      TIppiImage image(imRGB24), dest(mode), expected;
      fillRandom(image, 10, 10, 26);
      fillRandom(dest, side, side, 27);
      const unsigned char* const buffer = dest.Pixels;
      image.CopyTo(dest, -1, -1, 10, 10, true);
      EXPECT_EQ(dest.Pixels, buffer);
      EXPECT_EQ(dest.Mode, mode);
      if (side != 12 || mode != imRGB24) continue;
      image.CopyTo(expected, -1, -1, 10, 10);
      EXPECT_TRUE(samePicture(dest, expected));
    }
  }
}

}  // namespace
