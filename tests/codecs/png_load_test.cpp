#include <tuple>

#include "tests/codecs/expected.h"

namespace {

int loadPng(TIppiImage& image, const Bytes& bytes) {
  return image.LoadFromPngBuffer(bytes.data(), static_cast<unsigned>(bytes.size()));
}

int channelsOfType(int colourType) {
  if (colourType == PNG_COLOR_TYPE_GRAY) return 1;
  return colourType == PNG_COLOR_TYPE_RGB ? 3 : 4;
}

class PngLoad : public testing::TestWithParam<std::tuple<int, bool, bool, TIppiImageMode>> {};

TEST_P(PngLoad, GivesTheSamplesFromBuffersAndFiles) {
  const auto [colourType, interlaced, extraChunks, mode] = GetParam();
  Folder folder;
  for (const auto& [width, height] : {std::pair{1, 1}, {2, 1}, {5, 3}, {17, 40}, {100, 33}}) {
    const Samples samples = makeSamples(width, height, channelsOfType(colourType));
    const Bytes bytes = writePng(samples, {colourType, 8, interlaced, extraChunks});
    TIppiImage fromBuffer(mode), fromFile(mode);
    ASSERT_EQ(loadPng(fromBuffer, bytes), 0);
    EXPECT_TRUE(holds(fromBuffer, samples, true)) << width << 'x' << height;
    const std::string name = folder / "p.png";
    writeFile(name, bytes);
    ASSERT_EQ(fromFile.LoadFromPngFile(name.c_str()), 0);
    EXPECT_TRUE(samePicture(fromFile, fromBuffer));
  }
}

INSTANTIATE_TEST_SUITE_P(Kinds, PngLoad,
                         testing::Combine(testing::Values(PNG_COLOR_TYPE_GRAY, PNG_COLOR_TYPE_RGB,
                                                          PNG_COLOR_TYPE_RGB_ALPHA),
                                          testing::Bool(), testing::Bool(), testing::ValuesIn(kByteModes)));

TEST(PngLoad, OtherLayoutsAreRefusedAndLeaveNoPixels) {
  constexpr PngKind kKinds[] = {
      {PNG_COLOR_TYPE_PALETTE, 1},     {PNG_COLOR_TYPE_PALETTE, 8},    {PNG_COLOR_TYPE_GRAY_ALPHA, 8},
      {PNG_COLOR_TYPE_GRAY_ALPHA, 16}, {PNG_COLOR_TYPE_GRAY, 1},       {PNG_COLOR_TYPE_GRAY, 2},
      {PNG_COLOR_TYPE_GRAY, 4},        {PNG_COLOR_TYPE_GRAY, 16},      {PNG_COLOR_TYPE_RGB, 16},
      {PNG_COLOR_TYPE_RGB_ALPHA, 16},  {PNG_COLOR_TYPE_RGB, 16, true},
  };
  Folder folder;
  const Bytes rows(static_cast<std::size_t>(30 * 20 * 8), 0);
  for (const PngKind& kind : kKinds) {
    SCOPED_TRACE(testing::Message() << "type " << kind.colourType << " depth " << kind.bitDepth);
    const Bytes bytes = writePng(30, 20, rows, kind);
    const std::string name = folder / "p.png";
    writeFile(name, bytes);
    for (const TIppiImageMode mode : kByteModes) {
      TIppiImage image(mode), file(mode);
      fillRandom(image, 5, 5, 81);
      EXPECT_EQ(loadPng(image, bytes), -7);
      EXPECT_EQ(file.LoadFromPngFile(name.c_str()), -7);
      EXPECT_EQ(image.Pixels, nullptr);
      EXPECT_EQ(image.PixelsF, nullptr);
      EXPECT_EQ(image.Width, 30);
      EXPECT_EQ(image.Height, 20);
      // Work on what is left must be safe, although it has a size.
      TIppiImage dest;
      image.CopyTo(dest, 2, 3, 20, 19);
      image.Resize(dest, 0.5);
      dest.Assign(image);
    }
  }
}

TEST(PngLoad, WhatIsNoPngHasItsOwnCodes) {
  Folder folder;
  const Bytes good = writePng(makeSamples(6, 6, 3), {});
  const Bytes jpeg = writeJpeg(makeSamples(6, 6, 3));
  TIppiImage image(imRGB24);
  EXPECT_EQ(image.LoadFromPngBuffer(good.data(), 7), -1);
  EXPECT_EQ(image.LoadFromPngBuffer(good.data(), 0), -1);
  EXPECT_EQ(image.LoadFromPngBuffer(nullptr, 100), -1);
  EXPECT_EQ(loadPng(image, jpeg), -1);
  EXPECT_EQ(image.LoadFromPngBuffer(good.data(), 8), -6);
  EXPECT_EQ(image.LoadFromPngBuffer(good.data(), static_cast<unsigned>(good.size()) / 2), -6);
  const std::string name = folder / "p.png";
  const auto loadFile = [&](const Bytes& bytes) {
    writeFile(name, bytes);
    return image.LoadFromPngFile(name.c_str());
  };
  EXPECT_EQ(image.LoadFromPngFile("/nonexistent/a.png"), -1);
  EXPECT_EQ(image.LoadFromPngFile(nullptr), -1);
  EXPECT_EQ(image.LoadFromPngFile("/"), -2);
  EXPECT_EQ(loadFile({}), -2);
  EXPECT_EQ(loadFile(jpeg), -2);
  EXPECT_EQ(loadFile(Bytes(good.begin(), good.begin() + 8)), -5);
  EXPECT_EQ(loadFile(Bytes(good.begin(), good.begin() + 20)), -5);
  EXPECT_EQ(loadFile(Bytes(good.begin(), good.end() - 20)), -6);
}

}  // namespace
