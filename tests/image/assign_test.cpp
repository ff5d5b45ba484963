#include "tests/image/pictures.h"

namespace {

TEST(Assign, TakesOverEightBitPicturesWithTheirMode) {
  for (const TIppiImageMode from : kByteModes) {
    for (const TIppiImageMode to : kAllModes) {
      TIppiImage source(from), dest(to);
      fillRandom(source, 13, 7, 5);
      fillRandom(dest, 20, 20, 6);
      dest.Assign(source);
      EXPECT_TRUE(samePicture(dest, source)) << modeName(from) << " to " << modeName(to);
      EXPECT_TRUE(soundImage(dest));
    }
  }
}

bool allZero(const TIppiImage& image) {
  for (int i = 0; i < image.SizeBytes; ++i) {
    if (image.Pixels[i] != 0) return false;
  }
  return true;
}

TEST(Assign, FloatPicturesComeOutZeroWithTheRightSize) {
  for (const TIppiImageMode mode : {imGray32f, imRGB32f, imRGBA32f}) {
    TIppiImage source(mode), dest;
    fillRandom(source, 5, 4, 7);
    dest.Assign(source);
    EXPECT_EQ(dest.Mode, mode);
    EXPECT_EQ(dest.Width, 5);
    EXPECT_EQ(dest.Height, 4);
    EXPECT_TRUE(allZero(dest));
  }
}

TEST(Assign, OfAnEmptyOrFreedPictureIsSafe) {
  TIppiImage empty, dest(imRGB24);
  fillRandom(dest, 3, 3, 8);
  dest.Assign(empty);
  EXPECT_EQ(dest.Pixels, nullptr);
  EXPECT_EQ(dest.Mode, imGray8);
  // A freed picture keeps its size: the copy is black.
  TIppiImage freed(imRGB24);
  fillRandom(freed, 6, 5, 9);
  freed.FreeImage();
  dest.Assign(freed);
  EXPECT_EQ(dest.Width, 6);
  EXPECT_TRUE(allZero(dest));
}

struct ModePair {
  TIppiImageMode to;
  TIppiImageMode from;
};

bool toGray(const ModePair& pair) { return pair.to == imGray8 && (pair.from == imRGB24 || pair.from == imRGBA32); }

bool toFloats(const ModePair& pair) { return isFloat(pair.to) && pair.from == pair.to - imGray32f; }

// What each pair of modes must give in channel `k` of pixel (x, y); 255 is the alpha of a new image.
int expectedChannel(const ModePair& pair, const TIppiImage& source, int x, int y, int k) {
  const Pixel p = isFloat(pair.from) ? Pixel{} : pixelAt(source, x, y);
  if (pair.to == pair.from && !isFloat(pair.from)) return p[static_cast<unsigned>(k)];
  if (toGray(pair)) return (1225 * p[0] + 2404 * p[1] + 467 * p[2]) >> 12;
  if (toFloats(pair)) return p[static_cast<unsigned>(k)];
  return pair.to == imRGBA32 && k == 3 ? 255 : 0;
}

int actualChannel(const TIppiImage& image, int x, int y, int k) {
  if (!isFloat(image.Mode)) return at(image, x, y)[k];
  const int row = (image.Height - 1 - y) * (image.Step / 4);
  return static_cast<int>(image.PixelsF[row + x * channelsOf(image.Mode) + k]);
}

TEST(CopyFrom, ConvertsTheKnownPairsAndLeavesTheOthersAsAllocated) {
  for (const TIppiImageMode to : kAllModes) {
    for (const TIppiImageMode from : kAllModes) {
      SCOPED_TRACE(modeName(from) + " to " + modeName(to));
      TIppiImage source(from), dest(to);
      fillRandom(source, 9, 6, 11);
      fillRandom(dest, 2, 2, 12);
      dest.CopyFrom(source);
      ASSERT_EQ(dest.Mode, to);
      ASSERT_EQ(dest.Width, 9);
      ASSERT_EQ(dest.Height, 6);
      for (int i = 0; i < 9 * 6 * channelsOf(to); ++i) {
        const int k = i % channelsOf(to), x = i / channelsOf(to) % 9, y = i / channelsOf(to) / 9;
        ASSERT_EQ(actualChannel(dest, x, y, k), expectedChannel({to, from}, source, x, y, k)) << x << ' ' << y;
      }
    }
  }
}

}  // namespace
