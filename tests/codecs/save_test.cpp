#include "codecs/BMP.h"
#include "image/params.h"
#include "tests/codecs/expected.h"

namespace {

class Save : public testing::TestWithParam<TIppiImageMode> {
 protected:
  Folder folder_;
};

// The image as samples, top row first.
Samples samplesOf(const TIppiImage& image, int channels) {
  Samples samples{image.Width, image.Height, channels, {}};
  for (int y = 0; y < image.Height; ++y) {
    for (int x = 0; x < image.Width; ++x) {
      const Pixel p = pixelAt(image, x, y);
      const bool gray = image.Mode == imGray8;
      samples.data.insert(samples.data.end(), {p[0], gray ? p[0] : p[1], gray ? p[0] : p[2]});
      if (channels == 4) samples.data.push_back(image.Mode == imRGBA32 ? p[3] : 255);
    }
  }
  return samples;
}

TEST_P(Save, JpegHoldsThreeComponentsOfTheSetQuality) {
  TIppiImage image(GetParam());
  fillRandom(image, 37, 22, 121);
  const std::string name = folder_ / "out.jpg";
  ASSERT_EQ(image.SaveToJpegFile(name.c_str(), 0), 0);
  // The same rows through libjpeg directly, at the default quality.
  const Samples samples = samplesOf(image, 3);
  const Bytes written = readFile(name);
  const std::optional<Samples> decoded = decodeJpeg(written);
  ASSERT_TRUE(decoded);
  EXPECT_EQ(decoded->channels, 3);
  EXPECT_EQ(written, writeJpeg(samples, {}, 90));
}

TEST_P(Save, PngHoldsFourChannelsExactly) {
  TIppiImage image(GetParam());
  fillRandom(image, 37, 22, 122);
  const std::string name = folder_ / "out.png";
  ASSERT_EQ(image.SaveToPngFile(name.c_str()), 0);
  const std::optional<Samples> decoded = decodePng(readFile(name));
  ASSERT_TRUE(decoded);
  EXPECT_EQ(decoded->channels, 4);
  EXPECT_EQ(decoded->data, samplesOf(image, 4).data);
  TIppiImage back(imRGBA32);
  ASSERT_EQ(back.LoadFromPngFile(name.c_str()), 0);
  EXPECT_TRUE(holds(back, *decoded, true));
}

TEST_P(Save, BitmapComesBackWithoutAlpha) {
  TIppiImage image(GetParam()), back(imRGB24);
  fillRandom(image, 37, 22, 123);
  const std::string name = folder_ / "out.bmp";
  ASSERT_EQ(image.SaveToFile(name.c_str()), 0);
  ASSERT_EQ(back.LoadFromFile(name.c_str()), 0);
  EXPECT_TRUE(holds(back, samplesOf(image, 3), false));
}

INSTANTIATE_TEST_SUITE_P(Modes, Save, testing::ValuesIn(kByteModes),
                         [](const auto& mode) { return modeName(mode.param); });

class SaveTarget : public Save {};

TEST_F(SaveTarget, PicturesWithoutPixels) {
  const std::string name = folder_ / "out";
  const std::string printed = printedBy([&] {
    for (const auto& [width, height] : {std::pair{0, 0}, {10, 0}, {0, 10}}) {
      TIppiImage image(imRGB24);
      image.AllocNew(width, height);
      EXPECT_EQ(image.SaveToJpegFile(name.c_str(), 0), -1);
      EXPECT_EQ(image.SaveToPngFile(name.c_str()), -5);
      // One white pixel.
      EXPECT_EQ(image.SaveToFile(name.c_str()), 0);
      EXPECT_EQ(readFile(name).size(), 58U);
    }
  });
  EXPECT_EQ(printed, "");
  // After a refused load there is a size and no pixels: written black.
  TIppiImage freed(imRGBA32), back(imRGBA32), black(imRGBA32);
  fillRandom(freed, 7, 5, 126);
  freed.FreeImage();
  black.AllocNew(7, 5);
  ASSERT_EQ(freed.SaveToPngFile(name.c_str()), 0);
  ASSERT_EQ(back.LoadFromPngFile(name.c_str()), 0);
  EXPECT_TRUE(samePicture(back, black));
  EXPECT_EQ(freed.SaveToJpegFile(name.c_str(), 0), 0);
  // Longer than JPEG can hold.
  TIppiImage longest(imGray8);
  longest.AllocNew(65535, 1);
  EXPECT_EQ(longest.SaveToJpegFile(name.c_str(), 0), -1);
}

}  // namespace
