// Files cut short at every byte, with bytes changed at random, with sizes they can't fill.
#include <zlib.h>

#include <ctime>

#include "tests/codecs/bmp_files.h"
#include "tests/codecs/expected.h"

namespace {

enum Format { kJpeg, kPng, kBmp };

int loadBuffer(TIppiImage& image, const Bytes& bytes, Format format) {
  // A copy of the exact size, so that the sanitizers see a read past its end.
  const Bytes exact(bytes.begin(), bytes.end());
  const auto size = static_cast<unsigned>(exact.size());
  return format == kJpeg ? image.LoadFromJpegBuffer(exact.data(), size) : image.LoadFromPngBuffer(exact.data(), size);
}

int loadFile(TIppiImage& image, const std::string& name, Format format) {
  if (format == kJpeg) return image.LoadFromJpegFile(name.c_str());
  return format == kPng ? image.LoadFromPngFile(name.c_str()) : image.LoadFromFile(name.c_str());
}

// The load succeeds exactly where the bare decoder does, with the same pixels.
void checkAgainstDecoder(const Bytes& bytes, Format format, TIppiImageMode mode) {
  const std::optional<Samples> expected = format == kJpeg ? decodeJpeg(bytes) : decodePng(bytes);
  TIppiImage image(mode);
  const int code = loadBuffer(image, bytes, format);
  EXPECT_EQ(image.RoiSize.height, image.Height);
  if (format == kPng && code == -7) {
    EXPECT_EQ(image.Pixels, nullptr);
    return;
  }
  if (format == kJpeg && code == -2) {
    EXPECT_TRUE(expected && expected->channels == 2);
    return;
  }
  ASSERT_EQ(code == 0, expected.has_value()) << "code " << code;
  if (code == 0) {
    ASSERT_TRUE(holds(image, *expected, format == kPng));
  }
}

std::vector<Bytes> smallFiles(Format format) {
  if (format == kJpeg) {
    return {writeJpeg(makeSamples(19, 21, 3), {}), writeJpeg(makeSamples(24, 17, 1), {1, true, 0}),
            writeJpeg(makeSamples(40, 24, 3), {3, true, 0}), writeJpeg(makeSamples(33, 33, 3), {3, false, 2}),
            writeJpeg(makeSamples(9, 9, 4), {4, false, 0})};
  }
  if (format == kPng) {
    return {writePng(makeSamples(12, 9, 3), {}), writePng(makeSamples(11, 13, 4), {PNG_COLOR_TYPE_RGB_ALPHA, 8, true}),
            writePng(makeSamples(15, 8, 1), {PNG_COLOR_TYPE_GRAY, 8, false, true}),
            writePng(makeSamples(6, 6, 3), {PNG_COLOR_TYPE_RGB, 8, true, true})};
  }
  std::vector<Bytes> files;
  for (const int depth : {1, 4, 8, 16, 24, 32}) files.push_back(randomBmp(13, 7, depth, depth == 16, 91));
  return files;
}

class Damaged : public testing::TestWithParam<Format> {};

TEST_P(Damaged, FilesCutAtEveryByteMatchTheDecoderOrFailCleanly) {
  Folder folder;
  const std::string name = folder / "cut";
  for (const Bytes& whole : smallFiles(GetParam())) {
    for (std::size_t size = 0; size <= whole.size(); ++size) {
      SCOPED_TRACE(size);
      const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
      writeFile(name, cut);
      TIppiImage fromFile(kByteModes[size % 3]);
      const int code = loadFile(fromFile, name, GetParam());
      if (GetParam() == kBmp) {
        ASSERT_EQ(code, size < 54 ? -1 : 0);
        continue;
      }
      ASSERT_NO_FATAL_FAILURE(checkAgainstDecoder(cut, GetParam(), kByteModes[size % 3]));
      TIppiImage fromBuffer(fromFile.Mode);
      const int bufferCode = loadBuffer(fromBuffer, cut, GetParam());
      // The codes differ.
      ASSERT_EQ(code == 0, bufferCode == 0);
      if (code == 0) {
        ASSERT_TRUE(samePicture(fromFile, fromBuffer));
      }
    }
  }
}

Bytes withChangedBytes(Bytes bytes, std::mt19937& random) {
  const unsigned changes = 1 + random() % 4;
  for (unsigned i = 0; i < changes; ++i) {
    unsigned char& byte = bytes[random() % bytes.size()];
    byte = random() % 2 == 0 ? static_cast<unsigned char>(random())
                             : static_cast<unsigned char>(byte ^ 1U << random() % 8);
  }
  return bytes;
}

TEST_P(Damaged, ChangedBytesMatchTheDecoderOrFailCleanly) {
  Folder folder;
  const std::string name = folder / "changed";
  std::mt19937 random(92);
  for (const Bytes& whole : smallFiles(GetParam())) {
    for (int i = 0; i < 700; ++i) {
      const Bytes changed = withChangedBytes(whole, random);
      if (GetParam() == kBmp) {
        writeFile(name, changed);
        TIppiImage image(kByteModes[i % 3]);
        loadFile(image, name, kBmp);
        ASSERT_TRUE(soundImage(image));
      } else {
        ASSERT_NO_FATAL_FAILURE(checkAgainstDecoder(changed, GetParam(), kByteModes[i % 3])) << i;
      }
    }
  }
}

TEST_P(Damaged, NothingIsPrintedAndNoFileStaysOpen) {
  Folder folder;
  const std::string name = folder / "bad";
  std::mt19937 random(93);
  const int before = openDescriptors();
  const std::string printed = printedBy([&] {
    for (const Bytes& whole : smallFiles(GetParam())) {
      for (int i = 0; i < 150; ++i) {
        Bytes bad = i % 2 == 0 ? withChangedBytes(whole, random) : whole;
        if (i % 2 == 1) bad.resize(random() % bad.size());
        writeFile(name, bad);
        TIppiImage image(kByteModes[i % 3]);
        loadFile(image, name, GetParam());
        if (GetParam() != kBmp) loadBuffer(image, bad, GetParam());
      }
    }
  });
  EXPECT_EQ(printed, "");
  EXPECT_EQ(openDescriptors(), before);
}

INSTANTIATE_TEST_SUITE_P(Formats, Damaged, testing::Values(kJpeg, kPng, kBmp), [](const auto& format) {
  return std::string(format.param == kJpeg ? "Jpeg" : format.param == kPng ? "Png" : "Bmp");
});

// --- Sizes that a file declares but can't fill --------------------------------------------------------

// Of processor time, so that other programs do not count.
double secondsFor(const std::function<void()>& work) {
  const std::clock_t start = std::clock();
  work();
  return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

void putBigEndian(Bytes& bytes, std::size_t at, std::uint32_t value, int count) {
  for (int i = 0; i < count; ++i)
    bytes[at + static_cast<std::size_t>(i)] = static_cast<unsigned char>(value >> 8 * (count - 1 - i));
}

// The sides stand five bytes behind the marker of the frame (C0, or C2 when progressive).
Bytes jpegWithSides(Bytes bytes, int width, int height) {
  for (std::size_t i = 2; i + 9 < bytes.size(); ++i) {
    if (bytes[i] != 0xFF || (bytes[i + 1] != 0xC0 && bytes[i + 1] != 0xC2)) continue;
    putBigEndian(bytes, i + 5, static_cast<std::uint32_t>(height), 2);
    putBigEndian(bytes, i + 7, static_cast<std::uint32_t>(width), 2);
    return bytes;
  }
  throw std::logic_error("no frame");
}

Bytes pngWithSides(Bytes bytes, std::uint32_t width, std::uint32_t height) {
  putBigEndian(bytes, 16, width, 4);
  putBigEndian(bytes, 20, height, 4);
  putBigEndian(bytes, 29, static_cast<std::uint32_t>(crc32(0, bytes.data() + 12, 17)), 4);
  return bytes;
}

// Without the segments of the given marker.
Bytes withoutSegments(const Bytes& file, unsigned char marker) {
  Bytes kept(file.begin(), file.begin() + 2);
  std::size_t at = 2;
  while (at + 4 < file.size() && file[at + 1] != 0xDA) {
    const std::size_t end = at + 2 + static_cast<std::size_t>(file[at + 2] << 8 | file[at + 3]);
    if (file[at + 1] != marker)
      kept.insert(kept.end(), file.begin() + static_cast<long>(at), file.begin() + static_cast<long>(end));
    at = end;
  }
  kept.insert(kept.end(), file.begin() + static_cast<long>(at), file.end());
  return kept;
}

// A picture so large that its memory is used again by the next.
TEST(FailedLoads, ShowNothingOfAnEarlierPicture) {
  constexpr unsigned char kQuantisation = 0xDB;
  const Bytes good = writeJpeg(makeSamples(1500, 1000, 3), {}), bad = withoutSegments(good, kQuantisation);
  {
    TIppiImage earlier(imRGB24);
    ASSERT_EQ(loadBuffer(earlier, good, kJpeg), 0);
  }
  TIppiImage image(imRGB24);
  ASSERT_NE(loadBuffer(image, bad, kJpeg), 0);
  ASSERT_NE(image.Pixels, nullptr) << "the case is about a load that fails late";
  for (int i = 0; i < image.SizeBytes; ++i) ASSERT_EQ(image.Pixels[i], 0) << i;
}

TEST(HugeSizes, AreRefusedBeforeMemoryIsTaken) {
  const Bytes jpeg = writeJpeg(makeSamples(16, 16, 3), {}),
              progressive = writeJpeg(makeSamples(16, 16, 3), {3, true, 0});
  const Bytes png = writePng(makeSamples(16, 16, 4), {PNG_COLOR_TYPE_RGB_ALPHA});
  const Bytes interlaced = writePng(makeSamples(16, 16, 3), {PNG_COLOR_TYPE_RGB, 8, true});
  const double seconds = secondsFor([&] {
    for (const TIppiImageMode mode : kByteModes) {
      TIppiImage image(mode);
      for (const auto& [width, height] : {std::pair{65500, 65500}, {40000, 40000}, {20000, 20000}, {65500, 2000}}) {
        EXPECT_EQ(loadBuffer(image, jpegWithSides(jpeg, width, height), kJpeg), -1) << width;
        EXPECT_EQ(loadBuffer(image, jpegWithSides(progressive, width, height), kJpeg), -1) << width;
      }
      for (const std::uint32_t side : {2000U, 20000U, 65535U, 65536U, 1000000U, 0x7FFFFFFFU, 0xFFFFFFFFU, 0U}) {
        EXPECT_EQ(loadBuffer(image, pngWithSides(png, side, side), kPng), -6) << side;
        EXPECT_EQ(loadBuffer(image, pngWithSides(interlaced, side, side), kPng), -6) << side;
      }
    }
  });
  EXPECT_LT(seconds, 2);
}

TEST(HugeSizes, BitmapsAreRefusedAboveTheLimitsOnly) {
  Folder folder;
  const std::string name = folder / "huge.bmp";
  const auto load = [&](int width, int height) {
    writeFile(name, bmpHeader(width, height, 24));
    TIppiImage image(imRGB24);
    return image.LoadFromFile(name.c_str());
  };
  const double seconds = secondsFor([&] {
    for (const auto& [width, height] : {std::pair{0x7FFFFFFF, 0x7FFFFFFF},
                                        {0x7FFFFFFF, 1},
                                        {1, 0x7FFFFFFF},
                                        {65536, 1},
                                        {65535, 65535},
                                        {30000, 30000},
                                        {10000, 10000}}) {
      EXPECT_EQ(load(width, height), -1) << width << 'x' << height;
    }
    EXPECT_EQ(load(1000, 800), 0);
  });
  EXPECT_LT(seconds, 2);
}

// A progressive file of a few bytes a scan, each of which would walk over all blocks of a large picture.
TEST(HugeSizes, EndlessScansAreCutOff) {
  Bytes bytes = jpegWithSides(writeJpeg(makeSamples(16, 16, 1), {1, true, 0}), 8000, 8000);
  std::size_t lastScan = 0;
  for (std::size_t i = 0; i + 1 < bytes.size(); ++i) {
    if (bytes[i] == 0xFF && bytes[i + 1] == 0xDA) lastScan = i;
  }
  const Bytes scan(bytes.begin() + static_cast<std::ptrdiff_t>(lastScan), bytes.end() - 2);
  bytes.resize(bytes.size() - 2);
  for (int i = 0; i < 20000; ++i) bytes.insert(bytes.end(), scan.begin(), scan.end());
  TIppiImage image(imGray8);
  const double seconds = secondsFor([&] { EXPECT_EQ(loadBuffer(image, bytes, kJpeg), -1); });
  EXPECT_LT(seconds, 10);
}

}  // namespace
