// Loading from and saving to files, and loading from compressed buffers.
#include <cstdlib>
#include <filesystem>

#include "library_fixture.h"

namespace {

using Files = LibraryTest;

// Smooth, so that JPEG keeps it.
TPicture slope(int width, int height) {
  TPicture picture = PlainPicture(width, height, 3, 0);
  for (std::size_t i = 0; i < picture.pixels.size(); ++i) {
    const std::size_t pixel = i / 3, x = pixel % static_cast<std::size_t>(width);
    picture.pixels[i] = static_cast<unsigned char>(i % 3 == 0 ? 4 * x : i % 3 == 1 ? 200 - 3 * x : 90);
  }
  return picture;
}

bool startsWith(const std::string& path, std::initializer_list<int> bytes) {
  const std::vector<unsigned char> content = readFile(path);
  return content.size() > bytes.size() && std::equal(bytes.begin(), bytes.end(), content.begin());
}

bool isJpeg(const std::string& path) { return startsWith(path, {0xFF, 0xD8, 0xFF}); }
bool isPng(const std::string& path) { return startsWith(path, {0x89, 'P', 'N', 'G'}); }
bool isBmp(const std::string& path) { return startsWith(path, {'B', 'M'}); }

TEST_F(Files, LosslessFormatsGiveThePictureBack) {
  const TPicture picture = RandomPicture(37, 21, 3);
  for (const char* name : {"a.png", "A.PNG", "a.bmp", "a.BMP"}) {
    const std::string path = SavedPicture(picture, name);
    HImage image;
    ASSERT_EQ(VIZL_LoadImageFromFile(&image, path.c_str()), VIZLE_OK) << name;
    EXPECT_TRUE(PictureOf(image, 3) == picture) << name;
  }
}

TEST_F(Files, TheNameRulesTheFormatOfASavedFile) {
  const TPicture picture = slope(20, 20);
  EXPECT_TRUE(isPng(SavedPicture(picture, "out.Png")));
  EXPECT_TRUE(isBmp(SavedPicture(picture, "outbmp")));
  for (const char* name : {"out.tif", "out", "out.png.out"}) EXPECT_TRUE(isJpeg(SavedPicture(picture, name))) << name;
}

TEST_F(Files, AlphaIsKeptOnlyWhereItIsAskedFor) {
  const TPicture picture = RandomPicture(9, 7, 4);
  const std::string png = SavedPicture(picture, "alpha.png"), bmp = SavedPicture(picture, "alpha.bmp"),
                    jpg = SavedPicture(picture, "alpha.jpg");
  HImage image;
  ASSERT_EQ(VIZL_LoadImageFromFileWithAlpha(&image, png.c_str()), VIZLE_OK);
  EXPECT_TRUE(PictureOf(image, 4) == picture);
  ASSERT_EQ(VIZL_LoadImageFromFile(&image, png.c_str()), VIZLE_OK);
  TPicture opaque = picture;
  for (std::size_t i = 3; i < opaque.pixels.size(); i += 4) opaque.pixels[i] = 255;
  EXPECT_TRUE(PictureOf(image, 4) == opaque);
  for (const std::string& path : {bmp, jpg}) {
    ASSERT_EQ(VIZL_LoadImageFromFileWithAlpha(&image, path.c_str()), VIZLE_OK);
    EXPECT_EQ(ViewOf(image).mode, VIZL_IMAGE_COLOR32);
    EXPECT_EQ(PictureOf(image, 4).at(4, 4)[3], 255);
  }
}

TEST_F(Files, CompressedBuffersLoadLikeTheirFiles) {
  const auto png = readFile(SavedPicture(RandomPicture(9, 7, 4), "buffer.png"));
  const auto jpg = readFile(SavedPicture(slope(40, 24), "buffer.jpg"));
  const auto pngSize = static_cast<unsigned>(png.size()), jpgSize = static_cast<unsigned>(jpg.size());
  HImage image;
  ASSERT_EQ(VIZL_LoadImageFromPngBufferWithAlpha(&image, png.data(), pngSize), VIZLE_OK);
  EXPECT_TRUE(PictureOf(image, 4) == RandomPicture(9, 7, 4));
  ASSERT_EQ(VIZL_LoadImageFromPngBuffer(&image, png.data(), pngSize), VIZLE_OK);
  EXPECT_EQ(WidthOf(image), 9);
  ASSERT_EQ(VIZL_LoadImageFromJpegBuffer(&image, jpg.data(), jpgSize), VIZLE_OK);
  HImage fromFile;
  ASSERT_EQ(VIZL_LoadImageFromFile(&fromFile, SavedPicture(slope(40, 24), "again.jpg").c_str()), VIZLE_OK);
  EXPECT_TRUE(PictureOf(image, 3) == PictureOf(fromFile, 3));
}

TEST_F(Files, ABufferThatIsNoPictureKeepsTheHandle) {
  const unsigned char bytes[16] = {1, 2, 3};
  HImage expected = 0;
  for (auto load : {VIZL_LoadImageFromJpegBuffer, VIZL_LoadImageFromPngBuffer, VIZL_LoadImageFromPngBufferWithAlpha}) {
    for (unsigned size : {0u, 1u, 16u}) {
      HImage image = 77;
      EXPECT_EQ(load(&image, bytes, size), VIZLE_IMAGE_IO_FAILED) << size;
      EXPECT_EQ(image, expected++);
      EXPECT_TRUE(IsValid(image));
    }
    HImage image = 77;
    EXPECT_EQ(load(&image, bytes, 0x80000000u), VIZLE_IMAGE_IO_FAILED) << "more than a signed size holds";
    EXPECT_EQ(image, expected++);
  }
}

TEST_F(Files, ChecksOfALoadComeInTheirOrder) {
  const std::string missing = TemporaryPath("missing.tif");
  HImage image = 77;
  EXPECT_EQ(VIZL_LoadImageFromFile(&image, missing.c_str()), VIZLE_CANNOT_OPEN_FILE);
  EXPECT_EQ(VIZL_LoadImageFromFile(nullptr, missing.c_str()), VIZLE_CANNOT_OPEN_FILE);
  EXPECT_EQ(VIZL_LoadImageFromFile(&image, ""), VIZLE_CANNOT_OPEN_FILE);
  EXPECT_EQ(image, 77u) << "no handle yet";

  const std::string other = TemporaryPath("other.tif");
  writeFile(other, {1, 2, 3});
  EXPECT_EQ(VIZL_LoadImageFromFile(nullptr, other.c_str()), VIZLE_INVALID_ARGUMENT);
  EXPECT_EQ(VIZL_LoadImageFromFile(&image, other.c_str()), VIZLE_UNKNOWN_EXTENSION);
  EXPECT_EQ(image, 0u);
  EXPECT_EQ(WidthOf(image), 0);

  HImage expected = 1;
  for (const char* name : {"bad.png", "bad.jpg", "bad.bmp"}) {
    for (const std::vector<unsigned char>& content : {std::vector<unsigned char>{}, {'B', 'M', 0xFF, 0xD8, 1, 2}}) {
      const std::string path = TemporaryPath(name);
      writeFile(path, content);
      for (auto load : {VIZL_LoadImageFromFile, VIZL_LoadImageFromFileWithAlpha}) {
        EXPECT_EQ(load(&image, path.c_str()), VIZLE_BAD_IMAGE_FILE) << name;
        EXPECT_EQ(image, expected++) << "a failed load keeps its handle";
        EXPECT_TRUE(IsValid(image));
      }
    }
  }
  EXPECT_EQ(EmptyImage(), expected);
}

TEST_F(Files, ChecksOfASaveComeInTheirOrder) {
  const std::string nowhere = TemporaryPath("no_folder") + "/a.png";
  EXPECT_EQ(VIZL_SaveImageToFile(99, nowhere.c_str()), VIZLE_CANNOT_CREATE_FILE);
  const std::string path = TemporaryPath("old.png");
  writeFile(path, {1, 2, 3});
  EXPECT_EQ(VIZL_SaveImageToFile(99, path.c_str()), VIZLE_INVALID_ARGUMENT);
  EXPECT_TRUE(std::filesystem::exists(path));
  EXPECT_TRUE(readFile(path).empty()) << "emptied before the handle is looked at";
}

TEST_F(Files, AJpegTakesTheQualityOfItsContext) {
  const HImage image = ImageOf(RandomPicture(64, 64, 3));
  ContextID context;
  ASSERT_EQ(VIZL_CreateContext_ID(&context), VIZLE_OK);
  const auto sizeWith = [&](ContextID id) {
    const std::string path = TemporaryPath("quality.jpg");
    EXPECT_EQ(VIZL_SaveImageToFile_C(image, path.c_str(), id), VIZLE_OK);
    return readFile(path).size();
  };
  const std::size_t byDefault = sizeWith(0);
  EXPECT_EQ(sizeWith(context), byDefault);
  EXPECT_EQ(sizeWith(987), byDefault) << "an unknown context means 90 too";
  ASSERT_EQ(VIZL_SetJpegCompressionQuality_C(10, context), VIZLE_OK);
  EXPECT_LT(2 * sizeWith(context), byDefault);
  ASSERT_EQ(VIZL_SetJpegCompressionQuality(100), VIZLE_OK);
  EXPECT_GT(sizeWith(0), byDefault);
  EXPECT_EQ(sizeWith(987), byDefault);
  EXPECT_EQ(VIZL_FreeContext_ID(context), VIZLE_OK);
}

}  // namespace
