#include <tuple>

#include "tests/codecs/expected.h"

namespace {

int loadJpeg(TIppiImage& image, const Bytes& bytes) {
  return image.LoadFromJpegBuffer(bytes.data(), static_cast<unsigned>(bytes.size()));
}

class JpegLoad : public testing::TestWithParam<std::tuple<int, bool, TIppiImageMode>> {};

TEST_P(JpegLoad, GivesWhatLibjpegDecodesFromBuffersAndFiles) {
  const auto [components, progressive, mode] = GetParam();
  Folder folder;
  // Some of more than one fill of the source (4096 bytes) and odd sizes on both sides.
  for (const auto& [width, height] : {std::pair{1, 1}, {8, 8}, {17, 9}, {33, 70}, {257, 131}}) {
    const Bytes bytes = writeJpeg(makeSamples(width, height, components), {.progressive = progressive});
    const std::optional<Samples> expected = decodeJpeg(bytes);
    ASSERT_TRUE(expected);
    TIppiImage fromBuffer(mode), fromFile(mode);
    ASSERT_EQ(loadJpeg(fromBuffer, bytes), 0);
    EXPECT_TRUE(holds(fromBuffer, *expected, false)) << width << 'x' << height;
    const std::string name = folder / "p.jpg";
    writeFile(name, bytes);
    ASSERT_EQ(fromFile.LoadFromJpegFile(name.c_str()), 0);
    EXPECT_TRUE(samePicture(fromFile, fromBuffer));
  }
}

INSTANTIATE_TEST_SUITE_P(Kinds, JpegLoad,
                         testing::Combine(testing::Values(1, 3, 4), testing::Bool(), testing::ValuesIn(kByteModes)));

TEST(JpegLoad, TwoComponentsAreRefusedAndLeaveNoPixels) {
  const Bytes bytes = writeJpeg(makeSamples(20, 10, 2));
  for (const TIppiImageMode mode : kByteModes) {
    TIppiImage image(mode);
    fillRandom(image, 5, 5, 71);
    EXPECT_EQ(loadJpeg(image, bytes), -2);
    EXPECT_EQ(image.Pixels, nullptr);
    EXPECT_EQ(image.Width, 20);
    EXPECT_EQ(image.Height, 10);
    EXPECT_EQ(image.RoiSize.height, 10);
  }
}

TEST(JpegLoad, WhatIsNoJpegFails) {
  TIppiImage image(imRGB24);
  const unsigned char byte = 0xFF;
  EXPECT_EQ(image.LoadFromJpegBuffer(&byte, 0), -1);
  EXPECT_EQ(image.LoadFromJpegBuffer(nullptr, 0), -1);
  EXPECT_EQ(image.LoadFromJpegBuffer(nullptr, 10), -1);
  EXPECT_EQ(image.LoadFromJpegBuffer(&byte, 1), -1);
  EXPECT_EQ(image.LoadFromJpegBuffer(&byte, 0x80000000U), -1);
  EXPECT_EQ(image.LoadFromJpegFile("/nonexistent/a.jpg"), -1);
  EXPECT_EQ(image.LoadFromJpegFile("/"), -1);
  EXPECT_EQ(image.LoadFromJpegFile(nullptr), -1);
  EXPECT_EQ(loadJpeg(image, writePng(makeSamples(4, 4, 3), {})), -1);
}

}  // namespace
