// Pictures that ask for more than they are worth: what they may cost, and that those at the limits still load.
#include <sys/resource.h>

#include <ctime>

#include "tests/codecs/expected.h"
#include "tests/files/bmp_files.h"
#include "tests/files/hostile_files.h"

namespace {

enum Format { kJpeg, kPng };

int load(TIppiImage& image, const Bytes& bytes, Format format) {
  const auto size = static_cast<unsigned>(bytes.size());
  return format == kJpeg ? image.LoadFromJpegBuffer(bytes.data(), size) : image.LoadFromPngBuffer(bytes.data(), size);
}

int loadPngFile(TIppiImage& image, const Bytes& bytes) {
  Folder folder;
  const std::string name = folder / "limits.png";
  writeFile(name, bytes);
  return image.LoadFromPngFile(name.c_str());
}

// Of processor time, so that other programs do not count.
double secondsFor(const std::function<void()>& work) {
  const std::clock_t start = std::clock();
  work();
  return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

// Of the process so far, in MiB; sanitizers need memory of theirs.
long peakMemory() {
  rusage used = {};
  getrusage(RUSAGE_SELF, &used);
#ifdef __SANITIZE_ADDRESS__
  return 0;
#else
  return used.ru_maxrss / 1024;
#endif
}

bool isBlack(const TIppiImage& image) {
  for (int y = 0; y < image.Height; ++y) {
    const unsigned char* const row = image.Pixels + static_cast<std::ptrdiff_t>(y) * image.Step;
    for (int i = 0; i < image.Width * 3; ++i) {
      if (row[i] != 0) return false;
    }
  }
  return true;
}

TEST(HugeSizes, AreRefusedBeforeMemoryIsTaken) {
  const Bytes png = flatPng({16, 16, 4}, false), interlaced = flatPng({16, 16, 3}, true);
  const long before = peakMemory();
  const double seconds = secondsFor([&] {
    for (const TIppiImageMode mode : kByteModes) {
      TIppiImage image(mode);
      for (const auto& [width, height] : {std::pair{65500, 65500}, {40000, 40000}, {20000, 20000}, {65500, 2000}}) {
        for (const JpegCoding coding : {JpegCoding::kBaseline, JpegCoding::kProgressive, JpegCoding::kArithmetic,
                                        JpegCoding::kArithmeticProgressive}) {
          EXPECT_EQ(load(image, emptyJpeg({width, height, 3}, coding), kJpeg), -1) << width;
        }
      }
      for (const std::uint32_t side : {2000U, 20000U, 65535U, 65536U, 1000000U, 0x7FFFFFFFU, 0xFFFFFFFFU, 0U}) {
        EXPECT_EQ(load(image, pngWithSides(png, side, side), kPng), -6) << side;
        EXPECT_EQ(load(image, pngWithSides(interlaced, side, side), kPng), -6) << side;
      }
    }
  });
  EXPECT_LT(seconds, 2);
  EXPECT_LT(peakMemory() - before, 50);
}

TEST(HugeSizes, BitmapsAreRefusedAboveTheLimitsOnly) {
  constexpr std::pair<int, int> kRefused[] = {
      {0x7FFFFFFF, 0x7FFFFFFF}, {0x7FFFFFFF, 1}, {1, 0x7FFFFFFF}, {65536, 1}, {65535, 65535},
      {30000, 30000},           {10000, 10000},  {0, 5},          {5, 0}};
  Folder folder;
  const std::string name = folder / "huge.bmp";
  const auto loadBmp = [&](int width, int height) {
    writeFile(name, bmpHeader({width, height, 24}));
    TIppiImage image(imRGB24);
    return image.LoadFromFile(name.c_str());
  };
  const double seconds = secondsFor([&] {
    for (const auto& [width, height] : kRefused) {
      EXPECT_EQ(loadBmp(width, height), -1) << width << 'x' << height;
    }
    EXPECT_EQ(loadBmp(1000, 800), 0);
    EXPECT_EQ(loadBmp(65535, 1), 0);
    EXPECT_EQ(loadBmp(1, 65535), 0);
  });
  EXPECT_LT(seconds, 2);
}

TEST(LongSides, LoadInEveryFormat) {
  TIppiImage image(imRGB24);
  for (const auto& [width, height] : {std::pair{65500, 1}, {1, 65500}}) {
    for (const JpegCoding coding : {JpegCoding::kBaseline, JpegCoding::kProgressive}) {
      ASSERT_EQ(load(image, flatJpeg({width, height, 3}, coding), kJpeg), 0);
      EXPECT_TRUE(image.Width == width && image.Height == height);
      EXPECT_EQ(image.Pixels[(image.Height - 1) * image.Step + (image.Width - 1) * 3], 128);
    }
  }
  for (const auto& [width, height] : {std::pair{65535, 1}, {1, 65535}}) {
    for (const bool interlaced : {false, true}) {
      ASSERT_EQ(load(image, flatPng({width, height, 3}, interlaced), kPng), 0);
      EXPECT_TRUE(image.Width == width && image.Height == height && isBlack(image));
    }
  }
}

// A progressive file of a few bytes a scan, each of which would walk over all blocks of a large picture.
TEST(Scans, AreCutOffWhenTheyWouldTakeMinutes) {
  TIppiImage image(imGray8);
  const Bytes bytes = manyScans({8000, 8000, 1}, JpegCoding::kProgressive, 20000);
  const double seconds = secondsFor([&] { EXPECT_EQ(load(image, bytes, kJpeg), -1); });
  EXPECT_LT(seconds, 10);
}

// A gray picture starts with five others before the scan that is repeated.
TEST(Scans, UpTo500LoadHoweverSmallThePicture) {
  TIppiImage image(imGray8);
  for (const JpegCoding coding : {JpegCoding::kProgressive, JpegCoding::kArithmeticProgressive}) {
    EXPECT_EQ(load(image, manyScans({16, 16, 1}, coding, 495), kJpeg), 0);
    EXPECT_EQ(load(image, manyScans({16, 16, 1}, coding, 496), kJpeg), -1);
  }
}

TEST(PackedZeros, OfAWholePictureLoadInTheMemoryOfTwo) {
  const Bytes bytes = flatPng({2000, 2000, 3}, true);
  ASSERT_LT(bytes.size(), 13000U);
  const long before = peakMemory();
  TIppiImage image(imRGBA32), colour(imRGB24);
  EXPECT_EQ(load(colour, bytes, kPng), 0);
  EXPECT_TRUE(isBlack(colour));
  EXPECT_EQ(load(image, bytes, kPng), 0);
  EXPECT_LT(peakMemory() - before, (3 + 3 + 4) * 4 + 30);
}

TEST(PackedZeros, InTextsAndProfilesAreNotUnpacked) {
  // Behind a name and the kind of packing.
  Bytes data = packedZeros(1U << 25);
  data.insert(data.begin(), 3, 0);
  data[0] = 'x';
  const Bytes file = pngWithChunk(pngWithChunk(flatPng({8, 8, 3}, false), "iCCP", data), "zTXt", data);
  const long before = peakMemory();
  TIppiImage image(imRGB24);
  EXPECT_LT(secondsFor([&] { EXPECT_EQ(load(image, file, kPng), 0); }), 0.1);
  EXPECT_LT(peakMemory() - before, 30);
}

// The checksum of the rows is wrong, which only one who reads all that is packed with them can know.
TEST(PackedRows, BehindTheLastAreLeftWhereTheyAre) {
  std::mt19937 random(5);
  Bytes behind;
  putRandom(behind, 300000, random);
  for (const bool interlaced : {false, true}) {
    for (const auto& [width, height] : {std::pair{20, 20}, {7, 9}, {1, 1}}) {
      Bytes file = flatPng({width, height, 3}, interlaced, behind);
      file[file.size() - 12 - 1] ^= 1;
      TIppiImage image(imRGB24), fromFile(imRGB24);
      EXPECT_EQ(load(image, file, kPng), 0);
      EXPECT_TRUE(isBlack(image));
      EXPECT_EQ(loadPngFile(fromFile, file), 0);
      EXPECT_TRUE(samePicture(image, fromFile));
    }
  }
  Bytes wanted = flatPng({100, 1000, 3}, false);
  wanted[wanted.size() - 12 - 1] ^= 1;
  TIppiImage image(imRGB24);
  EXPECT_EQ(load(image, wanted, kPng), -6) << "without more behind it all of the packed data is checked";
}

}  // namespace
