#include "codecs/BMP.h"

#include "tests/codecs/expected.h"
#include "tests/files/bmp_files.h"

namespace {

using Rgba = std::array<int, 4>;

Rgba colour(const RGBApixel& p) { return {p.Blue, p.Green, p.Red, p.Alpha}; }

constexpr Rgba kWhite = {255, 255, 255, 0};

// Whether there are so many pixels and the colour at (x, y) is expected(x, y) everywhere; says where it first is not.
template <class Expected>
testing::AssertionResult coloursAre(const BMP& bmp, int width, int height, Expected expected) {
  if (bmp.Width != width || bmp.Height != height) {
    return testing::AssertionFailure() << "size " << bmp.Width << 'x' << bmp.Height;
  }
  for (int x = 0; x < width; ++x) {
    for (int y = 0; y < height; ++y) {
      if (colour(bmp.Pixels[x][y]) != expected(x, y)) return testing::AssertionFailure() << "at " << x << ", " << y;
    }
  }
  return testing::AssertionSuccess();
}

// Pixel (x, y) of a file of randomBmp, by the layout of the format: y from the top, rows bottom first.
Rgba slowPixel(const Bytes& file, int width, int height, int depth, bool masks, int x, int y) {
  const int start = 54 + (depth < 16 ? 4 << depth : masks ? 12 : 0);
  const unsigned char* const row = file.data() + start + bmpRowSize(width, depth) * (height - 1 - y);
  const auto entry = [&](int index) {
    const unsigned char* const e = file.data() + 54 + 4 * index;
    return Rgba{e[0], e[1], e[2], e[3]};
  };
  switch (depth) {
    case 1:
      return entry(row[x / 8] >> (7 - x % 8) & 1);
    case 4:
      return entry(x % 2 == 0 ? row[x / 2] >> 4 : row[x / 2] & 15);
    case 8:
      return entry(row[x]);
    case 16: {
      const int word = row[2 * x] + 256 * row[2 * x + 1];
      if (masks) return {(word & 31) * 8, (word >> 6 & 31) * 8, (word >> 11) * 8, 0};
      return {(word & 31) * 8, (word >> 5 & 31) * 8, (word >> 10 & 31) * 8, 0};
    }
    case 24:
      return {row[3 * x], row[3 * x + 1], row[3 * x + 2], 0};
    default:
      return {row[4 * x], row[4 * x + 1], row[4 * x + 2], row[4 * x + 3]};
  }
}

struct Kind {
  int depth;
  bool masks;
};

class BmpDepth : public testing::TestWithParam<Kind> {
 protected:
  bool read(BMP& bmp, const Bytes& bytes) {
    const std::string name = folder_ / "p.bmp";
    writeFile(name, bytes);
    return bmp.ReadFromFile(name.c_str());
  }

  Folder folder_;
};

TEST_P(BmpDepth, ReadsEveryPixel) {
  const int depth = GetParam().depth;
  const bool masks = GetParam().masks;
  // Widths with all remainders of bits and bytes, heights about the rows that are handled together.
  for (const int height : {1, 2, 15, 16, 17, 33}) {
    for (int width = 1; width < 20; ++width) {
      const Bytes bytes = randomBmp(width, height, depth, masks, static_cast<unsigned>(width));
      BMP bmp;
      ASSERT_TRUE(read(bmp, bytes));
      ASSERT_EQ(bmp.TellWidth(), width);
      ASSERT_EQ(bmp.TellHeight(), height);
      ASSERT_EQ(bmp.TellBitDepth(), depth);
      ASSERT_TRUE(coloursAre(bmp, width, height,
                             [&](int x, int y) { return slowPixel(bytes, width, height, depth, masks, x, y); }));
    }
  }
}

// Rows that the file lacks are white; a row counts from its last byte on, padding included, but at
// depth 16 from each whole pixel.
TEST_P(BmpDepth, ACutFileIsWhiteWhereItEnds) {
  const int depth = GetParam().depth;
  const bool masks = GetParam().masks;
  constexpr int kWidth = 5, kHeight = 4;
  const Bytes whole = randomBmp(kWidth, kHeight, depth, masks, 101);
  const int rowSize = bmpRowSize(kWidth, depth), start = static_cast<int>(whole.size()) - rowSize * kHeight;
  for (int size = start; size <= static_cast<int>(whole.size()); ++size) {
    BMP bmp;
    ASSERT_TRUE(read(bmp, Bytes(whole.begin(), whole.begin() + size)));
    const int rows = (size - start) / rowSize, extra = (size - start) % rowSize;
    const auto expected = [&](int x, int y) {
      const int fromBottom = kHeight - 1 - y;
      const bool there = fromBottom < rows || (depth == 16 && fromBottom == rows && 2 * x + 2 <= extra);
      return there ? slowPixel(whole, kWidth, kHeight, depth, masks, x, y) : kWhite;
    };
    ASSERT_TRUE(coloursAre(bmp, kWidth, kHeight, expected)) << size;
  }
}

TEST_P(BmpDepth, WrittenFilesReadBack) {
  const auto [depth, masks] = GetParam();
  BMP bmp, back;
  // Width 3 for the padding; of equal palette colours the first is taken, which makes no difference.
  ASSERT_TRUE(read(bmp, randomBmp(3, 21, depth, masks, 102)));
  const std::string name = folder_ / "out.bmp";
  ASSERT_TRUE(bmp.WriteToFile(name.c_str()));
  const int header = 54 + (depth < 16 ? 4 << depth : depth == 16 ? 12 : 0);
  EXPECT_EQ(readFile(name).size(), static_cast<std::size_t>(header + bmpRowSize(3, depth) * 21));
  ASSERT_TRUE(back.ReadFromFile(name.c_str()));
  EXPECT_EQ(back.XPelsPerMeter, 2835);
  EXPECT_EQ(back.YPelsPerMeter, 2000);
  EXPECT_TRUE(coloursAre(back, 3, 21, [&](int x, int y) { return colour(bmp.Pixels[x][y]); }));
}

INSTANTIATE_TEST_SUITE_P(Depths, BmpDepth,
                         testing::Values(Kind{1, false}, Kind{4, false}, Kind{8, false}, Kind{16, false},
                                         Kind{16, true}, Kind{24, false}, Kind{32, false}),
                         [](const auto& kind) {
                           return std::to_string(kind.param.depth) + (kind.param.masks ? "Masks" : "");
                         });

class BmpFile : public BmpDepth {};

TEST_F(BmpFile, BytesOfAOnePixelPicture) {
  BMP bmp;
  bmp.Pixels[0][0] = {1, 2, 3, 4};
  const std::string name = folder_ / "one.bmp";
  ASSERT_TRUE(bmp.WriteToFile(name.c_str()));
  const Bytes expected = {'B', 'M', 58,   0,    0, 0, 0, 0, 0,  0, 54, 0, 0, 0, 40, 0, 0, 0, 1,    0,
                          0,   0,   1,    0,    0, 0, 1, 0, 24, 0, 0,  0, 0, 0, 4,  0, 0, 0, 0xC4, 0x0E,
                          0,   0,   0xC4, 0x0E, 0, 0, 0, 0, 0,  0, 0,  0, 0, 0, 1,  2, 3, 0};
  EXPECT_EQ(readFile(name), expected);
}

TEST_F(BmpFile, SettersRefuseBadValuesWithoutAChange) {
  BMP bmp;
  EXPECT_EQ(bmp.TellBitDepth(), 24);
  EXPECT_EQ(bmp.TellWidth(), 1);
  ASSERT_TRUE(bmp.SetSize(3, 2));
  EXPECT_EQ(colour(bmp.Pixels[2][1]), kWhite);
  bmp.Pixels[2][1] = {9, 9, 9, 9};
  for (const auto& [width, height] : {std::pair{0, 1}, {1, 0}, {-5, 5}, {65536, 1}, {60000, 60000}}) {
    EXPECT_FALSE(bmp.SetSize(width, height));
  }
  EXPECT_EQ(bmp.TellWidth(), 3);
  EXPECT_EQ(bmp.Pixels[2][1].Red, 9);
  for (const int depth : {0, 2, 7, 15, 48, -1}) EXPECT_FALSE(bmp.SetBitDepth(depth));
  EXPECT_EQ(bmp.TellBitDepth(), 24);
  EXPECT_EQ(bmp.Colors, nullptr);
  ASSERT_TRUE(bmp.SetBitDepth(4));
  EXPECT_NE(bmp.Colors, nullptr);
  ASSERT_TRUE(bmp.SetBitDepth(24));
  EXPECT_EQ(bmp.Colors, nullptr);
}

void expectFailed(const BMP& bmp) {
  EXPECT_EQ(bmp.Width, 1);
  EXPECT_EQ(bmp.Height, 1);
  EXPECT_EQ(bmp.BitDepth, 1);
}

TEST_F(BmpFile, UnsupportedHeadersLeaveOnePixelOfDepthOne) {
  const Bytes bad[] = {
      bmpHeader({4, -10, 24}),  bmpHeader({0, 4, 24}),    bmpHeader({-4, 4, 24}),   bmpHeader({4, 4, 2}),
      bmpHeader({4, 4, 0}),     bmpHeader({4, 4, 65535}), bmpHeader({4, 4, 8, 1}),  bmpHeader({4, 4, 4, 2}),
      bmpHeader({4, 4, 24, 3}), bmpHeader({4, 4, 32, 3}), bmpHeader({4, 4, 16, 4}), bmpHeader({4, 4, 24, -1}),
  };
  for (const Bytes& bytes : bad) {
    BMP bmp;
    bmp.SetSize(5, 5);
    EXPECT_FALSE(read(bmp, bytes));
    expectFailed(bmp);
  }
  BMP bmp;
  bmp.SetSize(5, 5);
  EXPECT_FALSE(bmp.ReadFromFile("/nonexistent/a.bmp"));
  expectFailed(bmp);
  for (std::size_t size = 2; size < 54; ++size) {
    Bytes cut = bmpHeader({4, 4, 24});
    cut.resize(size);
    bmp.SetBitDepth(24);
    EXPECT_FALSE(read(bmp, cut)) << size;
    expectFailed(bmp);
  }
}

TEST_F(BmpFile, WhatIsNoBitmapLeavesTheObjectAsItWas) {
  BMP bmp;
  bmp.SetSize(5, 6);
  for (const Bytes& bytes : {Bytes{}, Bytes{'B'}, Bytes{'M', 'B', 1, 2}, Bytes(100, 'x')}) {
    EXPECT_FALSE(read(bmp, bytes));
    EXPECT_EQ(bmp.TellWidth(), 5);
    EXPECT_EQ(bmp.TellBitDepth(), 24);
  }
}

TEST_F(BmpFile, AShortPaletteIsFilledUpWithWhite) {
  Bytes bytes = bmpHeader({256, 1, 8, 0, 54 + 40});
  for (int i = 0; i < 40; ++i) bytes.push_back(static_cast<unsigned char>(i + 1));
  for (int i = 0; i < 256; ++i) bytes.push_back(static_cast<unsigned char>(i));
  BMP bmp;
  ASSERT_TRUE(read(bmp, bytes));
  for (int x = 0; x < 256; ++x) {
    ASSERT_EQ(colour(bmp.Pixels[x][0]), (x < 10 ? Rgba{4 * x + 1, 4 * x + 2, 4 * x + 3, 4 * x + 4} : kWhite)) << x;
  }
}

// An offset inside the headers counts as none: no palette entry is read and nothing skipped.
TEST_F(BmpFile, OddOffsetsOfThePixels) {
  Bytes bytes = bmpHeader({4, 1, 8, 0, 10});
  for (const int index : {0, 1, 2, 3}) bytes.push_back(static_cast<unsigned char>(index));
  BMP bmp;
  ASSERT_TRUE(read(bmp, bytes));
  EXPECT_EQ(colour(bmp.Pixels[3][0]), kWhite);
  // Bytes between the headers and the pixels are skipped, more than one read of them here.
  bytes = bmpHeader({1, 1, 24, 0, 54 + 10000});
  bytes.resize(54 + 10000, 7);
  for (const int value : {1, 2, 3, 0}) bytes.push_back(static_cast<unsigned char>(value));
  ASSERT_TRUE(read(bmp, bytes));
  EXPECT_EQ(colour(bmp.Pixels[0][0]), (Rgba{1, 2, 3, 0}));
  // An offset behind the end: nothing is left to read.
  ASSERT_TRUE(read(bmp, bmpHeader({2, 2, 24, 0, 0x7FFFFFFF})));
  EXPECT_EQ(colour(bmp.Pixels[1][1]), kWhite);
  // Masks that the file ends in.
  bytes = bmpHeader({2, 2, 16, 3});
  bytes.resize(60, 0xFF);
  ASSERT_TRUE(read(bmp, bytes));
  EXPECT_EQ(colour(bmp.Pixels[0][0]), kWhite);
}

TEST_F(BmpFile, MasksOfAnyShapeAreShiftedBelowThirtyTwo) {
  Bytes bytes = bmpHeader({1, 1, 16, 3});
  for (const std::uint32_t mask : {0xFFFFU, 0x0000U, 0x8001U}) putLittleEndian(bytes, mask, 4);
  for (const int value : {0xFF, 0xFF, 0, 0}) bytes.push_back(static_cast<unsigned char>(value));
  BMP bmp;
  ASSERT_TRUE(read(bmp, bytes));
  // 0xFFFF needs 11 shifts and gives 31 * 8; 0x8001 needs 11 and gives 16 * 8.
  EXPECT_EQ(colour(bmp.Pixels[0][0]), (Rgba{128, 0, 248, 0}));
}

// --- Images from and to bitmaps -------------------------------------------------------------------------

TEST(Bitmap, ImagesTakeTheColoursWithoutTheAlpha) {
  BMP bmp;
  for (const auto& [width, height] : {std::pair{1, 1}, {3, 40}, {40, 3}, {37, 16}, {16, 35}}) {
    bmp.SetSize(width, height);
    std::mt19937 random(111);
    for (int x = 0; x < width; ++x) {
      for (int y = 0; y < height; ++y) {
        const auto byte = [&] { return static_cast<unsigned char>(random()); };
        bmp.Pixels[x][y] = {byte(), byte(), byte(), byte()};
      }
    }
    for (const TIppiImageMode mode : kByteModes) {
      TIppiImage image(mode);
      image.LoadFromBitmap(bmp);
      ASSERT_TRUE(soundImage(image));
      const auto expected = [&](int x, int y) -> Pixel {
        const RGBApixel& p = bmp.Pixels[x][y];
        // Gray sees the bytes in the order of the file: the weight of red falls on blue.
        const int gray = (1225 * p.Blue + 2404 * p.Green + 467 * p.Red) >> 12;
        if (image.Mode == imGray8) return {static_cast<unsigned char>(gray), 0, 0, 0};
        return {p.Red, p.Green, p.Blue, static_cast<unsigned char>(image.Mode == imRGBA32 ? 255 : 0)};
      };
      ASSERT_TRUE(pixelsAre(image, width, height, expected)) << modeName(mode);
    }
  }
}

TEST(Bitmap, ImagesAreGivenAsTwentyFourBits) {
  for (const TIppiImageMode mode : kByteModes) {
    TIppiImage image(mode);
    fillRandom(image, 21, 35, 112);
    BMP bmp;
    bmp.SetBitDepth(8);
    image.SaveToBitmap(bmp);
    ASSERT_EQ(bmp.TellBitDepth(), 24);
    EXPECT_TRUE(coloursAre(bmp, 21, 35, [&](int x, int y) {
      const Pixel p = pixelAt(image, x, y);
      return image.Mode == imGray8 ? Rgba{p[0], p[0], p[0], 0} : Rgba{p[2], p[1], p[0], 0};
    })) << modeName(mode);
  }
}

TEST(Bitmap, EmptyFreedAndFloatImages) {
  BMP bmp;
  TIppiImage empty(imRGB24), thin(imRGB24), freed(imRGB24), floats(imRGB32f);
  empty.SaveToBitmap(bmp);
  EXPECT_EQ(bmp.TellWidth(), 1);
  EXPECT_EQ(colour(bmp.Pixels[0][0]), kWhite);
  thin.AllocNew(100, 0);
  thin.SaveToBitmap(bmp);
  EXPECT_EQ(bmp.TellWidth(), 1);
  fillRandom(freed, 4, 3, 113);
  freed.FreeImage();
  fillRandom(floats, 4, 3, 114);
  for (TIppiImage* image : {&freed, &floats}) {
    image->SaveToBitmap(bmp);
    EXPECT_EQ(bmp.TellWidth(), 4);
    EXPECT_EQ(colour(bmp.Pixels[3][2]), (Rgba{0, 0, 0, 0}));
  }
  const float before = floats.PixelsF[0];
  floats.LoadFromBitmap(bmp);
  EXPECT_EQ(floats.PixelsF[0], before);
}

}  // namespace
