#include <climits>
#include <memory>
#include <tuple>

#include "api/pixel_buffer.h"
#include "image/TIppiImage.h"
#include "library_fixture.h"

namespace {

// What a buffer of `channels` shows after a picture has gone through a handle, by the plain rules.
void expectPixel(const TPicture& result, const TPicture& source, int x, int y) {
  const unsigned char* in = source.at(x, y);
  const unsigned char* out = result.at(x, y);
  const unsigned char rgb[3] = {in[0], in[source.channels == 1 ? 0 : 1], in[source.channels == 1 ? 0 : 2]};
  if (result.channels == 1) {
    // 0.299, 0.587 and 0.114 in 4096ths, rounded.
    ASSERT_EQ(out[0], (1225 * rgb[0] + 2404 * rgb[1] + 467 * rgb[2]) >> 12) << x << ", " << y;
    return;
  }
  for (int k = 0; k < 3; ++k) ASSERT_EQ(out[k], rgb[k]) << x << ", " << y;
  if (result.channels == 4) {
    ASSERT_EQ(out[3], source.channels == 4 ? in[3] : 255) << x << ", " << y;
  }
}

void expectPicture(const TPicture& result, const TPicture& source) {
  ASSERT_EQ(result.width, source.width);
  ASSERT_EQ(result.height, source.height);
  for (int y = 0; y < source.height; ++y) {
    for (int x = 0; x < source.width; ++x) expectPixel(result, source, x, y);
  }
}

class RawPixels : public LibraryTest, public testing::WithParamInterface<std::tuple<int, int, int>> {};

// Buffers here have not one byte more than they need: a row that reads or writes too far shows under a checker of
// memory.
TEST_P(RawPixels, ComeBackInEveryLayoutFromRowsOfAnyDistance) {
  const auto [width, channels, outChannels] = GetParam();
  const TPicture source = RandomPicture(width, 5, channels, static_cast<unsigned>(width));
  const HImage image = EmptyImage();
  for (const int padding : {0, 7}) {
    const int rowBytes = width * channels, scanLine = rowBytes + padding;
    const auto size = static_cast<std::size_t>(4 * scanLine + rowBytes);
    const auto spread = std::make_unique<unsigned char[]>(size);
    for (int y = 0; y < 5; ++y) std::copy_n(source.at(0, y), rowBytes, spread.get() + y * scanLine);
    ASSERT_EQ(VIZL_AssignImageFromBuffer(image, spread.get(), width, 5, scanLine, source.mode()), VIZLE_OK);
    const TPicture out = PictureOf(image, outChannels);
    expectPicture(out, source);
    int told = 0;
    ASSERT_EQ(VIZL_GetImageBufferSize(image, &told, out.mode()), VIZLE_OK);
    ASSERT_EQ(static_cast<std::size_t>(told), out.pixels.size());

    // From the last row backward: the picture stands on its head.
    ASSERT_EQ(VIZL_AssignImageFromBuffer(image, spread.get() + 4 * scanLine, width, 5, -scanLine, source.mode()),
              VIZLE_OK);
    TPicture head = source;
    for (int y = 0; y < 5; ++y) std::copy_n(source.at(0, 4 - y), rowBytes, head.pixels.data() + y * rowBytes);
    expectPicture(PictureOf(image, outChannels), head);
  }
}

INSTANTIATE_TEST_SUITE_P(Sizes, RawPixels,
                         testing::Combine(testing::Values(1, 2, 3, 5, 15, 16, 17, 31, 33, 67), testing::Values(1, 3, 4),
                                          testing::Values(1, 3, 4)));

using Buffers = LibraryTest;

TEST_F(Buffers, TheViewShowsTheBottomRowFirst) {
  for (int channels : {1, 3, 4}) {
    const TPicture source = RandomPicture(5, 3, channels);
    const HImage image = ImageOf(source);
    const TView view = ViewOf(image);
    EXPECT_EQ(view.width, 5);
    EXPECT_EQ(view.height, 3);
    EXPECT_EQ(view.mode, channels == 4 ? VIZL_IMAGE_COLOR32 : VIZL_IMAGE_COLOR24) << "gray becomes colour";
    EXPECT_EQ(view.scanLine, 36 * (channels == 4 ? 4 : 3));
    EXPECT_EQ(view.data[0], source.at(0, 2)[0]);
    EXPECT_EQ(view.data[2 * view.scanLine], source.at(0, 0)[0]);
  }
}

TEST_F(Buffers, UnknownLayoutsCountAsThreeBytes) {
  const TPicture source = RandomPicture(5, 3, 3);
  HImage image;
  ASSERT_EQ(VIZL_LoadImageFromBuffer(&image, source.pixels.data(), 5, 3, 15, 7), VIZLE_OK);
  int size = 0;
  ASSERT_EQ(VIZL_GetImageBufferSize(image, &size, -1), VIZLE_OK);
  EXPECT_EQ(size, 45);
  TPicture out = PlainPicture(5, 3, 3, 0);
  ASSERT_EQ(VIZL_SaveImageToBuffer(image, out.pixels.data(), INT_MAX), VIZLE_OK);
  EXPECT_TRUE(out == source);
}

TEST_F(Buffers, SizesWithoutPixelsGiveEmptyImages) {
  const unsigned char byte = 1;
  for (const auto& [width, height] : {std::pair(0, 5), std::pair(5, 0), std::pair(-1, 5), std::pair(5, INT_MIN)}) {
    HImage image;
    ASSERT_EQ(VIZL_LoadImageFromBuffer(&image, &byte, width, height, 0, 1), VIZLE_OK);
    const TView view = ViewOf(image);
    EXPECT_EQ(view.data, nullptr);
    EXPECT_TRUE(view.width == 0 || view.height == 0);
    unsigned char untouched = 99;
    EXPECT_EQ(VIZL_SaveImageToBuffer(image, &untouched, 2), VIZLE_OK);
    EXPECT_EQ(untouched, 99);
  }
}

TEST_F(Buffers, SizesBeyondTheLimitsAreRefusedBeforeAnythingIsRead) {
  const unsigned char byte = 1;
  const HImage image = ImageOf(RandomPicture(5, 3, 3));
  for (const auto& [width, height] : {std::pair(65536, 1), std::pair(1, 65536), std::pair(65535, 65535),
                                      std::pair(INT_MAX, 1), std::pair(INT_MAX, INT_MAX)}) {
    HImage made = 77;
    EXPECT_EQ(VIZL_LoadImageFromBuffer(&made, &byte, width, height, INT_MAX, 2), VIZLE_INVALID_ARGUMENT);
    EXPECT_EQ(WidthOf(made), 0) << "the handle is made and empty";
    EXPECT_EQ(VIZL_AssignImageFromBuffer(image, &byte, width, height, INT_MIN, 1), VIZLE_INVALID_ARGUMENT);
  }
  EXPECT_TRUE(PictureOf(image, 3) == RandomPicture(5, 3, 3)) << "and an image to fill stays as it was";
}

// No exported call makes a gray image, so these go past the handles.
TEST(GrayImage, IsWrittenInEveryLayout) {
  TIppiImage image(imGray8);
  image.AllocNew(3, 2);
  for (int i = 0; i < 6; ++i) image.Pixels[(1 - i / 3) * image.Step + i % 3] = static_cast<unsigned char>(10 + i);
  TPicture gray = PlainPicture(3, 2, 1, 0), color = PlainPicture(3, 2, 3, 0), alpha = PlainPicture(3, 2, 4, 0);
  for (TPicture* out : {&gray, &color, &alpha}) {
    EXPECT_EQ(BufferSize(image, out->mode()), static_cast<int64_t>(out->pixels.size()));
    WriteToBuffer(image, out->pixels.data(), out->mode());
  }
  for (int i = 0; i < 6; ++i) {
    EXPECT_EQ(*gray.at(i % 3, i / 3), 10 + i);
    for (int k = 0; k < 3; ++k) {
      EXPECT_EQ(color.at(i % 3, i / 3)[k], 10 + i);
      EXPECT_EQ(alpha.at(i % 3, i / 3)[k], 10 + i);
    }
    EXPECT_EQ(alpha.at(i % 3, i / 3)[3], 255);
  }
}

TEST(BufferSize, IsCountedBeyond32Bits) {
  TIppiImage image(imRGB24);
  image.Width = 60000;
  image.Height = 11000;
  EXPECT_EQ(BufferSize(image, VIZL_IMAGE_COLOR32), 2640000000LL);
}

TEST(WriteToBuffer, TakesNothingFromAnImageThatLostItsPixels) {
  TIppiImage image(imRGB24);
  image.Width = 4;
  image.Height = 4;
  unsigned char untouched = 99;
  WriteToBuffer(image, &untouched, VIZL_IMAGE_COLOR32);
  EXPECT_EQ(untouched, 99);
}

}  // namespace
