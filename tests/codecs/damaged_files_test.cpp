// Files cut short at every byte, with bytes changed at random, without what they need.
#include "tests/codecs/expected.h"
#include "tests/files/bmp_files.h"

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
    return {writeJpeg(makeSamples(19, 21, 3)), writeJpeg(makeSamples(24, 17, 1), {.progressive = true}),
            writeJpeg(makeSamples(40, 24, 3), {.progressive = true}), writeJpeg(makeSamples(33, 33, 3), {.restart = 2}),
            writeJpeg(makeSamples(9, 9, 4))};
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

TEST_P(Damaged, ChangedBytesMatchTheDecoderOrFailCleanlyAndSilently) {
  Folder folder;
  const std::string name = folder / "changed";
  std::mt19937 random(92);
  std::vector<Bytes> files;
  for (const Bytes& whole : smallFiles(GetParam())) {
    for (int i = 0; i < 700; ++i) files.push_back(withChangedBytes(whole, random));
  }
  const auto before = openDescriptors();
  const std::string printed = printedBy([&] {
    for (std::size_t i = 0; i < files.size(); i += GetParam() == kBmp ? 1 : 5) {
      writeFile(name, files[i]);
      TIppiImage image(kByteModes[i % 3]);
      loadFile(image, name, GetParam());
      ASSERT_TRUE(soundImage(image));
    }
  });
  EXPECT_EQ(printed, "");
  EXPECT_EQ(openDescriptors(), before);
  for (std::size_t i = 0; GetParam() != kBmp && i < files.size(); ++i) {
    ASSERT_NO_FATAL_FAILURE(checkAgainstDecoder(files[i], GetParam(), kByteModes[i % 3])) << i;
  }
}

INSTANTIATE_TEST_SUITE_P(Formats, Damaged, testing::Values(kJpeg, kPng, kBmp), [](const auto& format) {
  return std::string(format.param == kJpeg ? "Jpeg" : format.param == kPng ? "Png" : "Bmp");
});

// A picture so large that its memory is used again by the next.
TEST(FailedLoads, ShowNothingOfAnEarlierPicture) {
  const Bytes good = writeJpeg(makeSamples(1500, 1000, 3));
  Segments segments = splitJpeg(good);
  std::erase_if(segments, [](const Bytes& segment) { return isOf(segment, kTables); });
  const Bytes bad = joinJpeg(segments);
  {
    TIppiImage earlier(imRGB24);
    ASSERT_EQ(loadBuffer(earlier, good, kJpeg), 0);
  }
  TIppiImage image(imRGB24);
  ASSERT_NE(loadBuffer(image, bad, kJpeg), 0);
  ASSERT_NE(image.Pixels, nullptr) << "the case is about a load that fails late";
  for (int i = 0; i < image.SizeBytes; ++i) ASSERT_EQ(image.Pixels[i], 0) << i;
}

}  // namespace
