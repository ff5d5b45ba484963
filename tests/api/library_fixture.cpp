#include "library_fixture.h"

#include <random>

#include "detect/TIppiFaceDetector.h"
#include "tests/detect/cascade_builder.h"

namespace {

void restoreSettings() {
  EXPECT_EQ(VIZL_SetFaceDetectionParameters(true, true, 384), VIZLE_OK);
  EXPECT_EQ(VIZL_SetFaceDetectionThreshold(3), VIZLE_OK);
  EXPECT_EQ(VIZL_SetJpegCompressionQuality(90), VIZLE_OK);
  EXPECT_EQ(pcSetFaceScale(1), VIZLE_OK);
  EXPECT_EQ(pcSetFaceShift(0, 0), VIZLE_OK);
}

// One stage with one classifier on a window of 20 by 20: the middle 8 by 8 pixels against the 16 by 16 around them, as
// a value that is the more negative the brighter the middle is. A disc that fills the middle gives about -1.29
// standard deviations, and a flat window 0, which must not pass.
const TestCascade kDiscCascade = {20, 20, {{{{2, 2, 16, 16}, {6, 6, 8, 8}}, {1, -4}, {-1.1F}, {1}, {0}, {2}}}, {0.5F}};

}  // namespace

void LibraryTest::SetUp() {
  ASSERT_EQ(VIZL_Initialize(nullptr), VIZLE_OK);
  restoreSettings();
}

void LibraryTest::TearDown() {
  restoreSettings();
  EXPECT_EQ(VIZL_Finalize(), VIZLE_OK);
}

void DiscTest::SetUp() {
  LibraryTest::SetUp();
  UseDiscDetector();
  ASSERT_EQ(VIZL_SetFaceDetectionParameters(false, false, 200), VIZLE_OK);
}

bool operator==(const TPicture& a, const TPicture& b) {
  return a.width == b.width && a.height == b.height && a.channels == b.channels && a.pixels == b.pixels;
}

TPicture PlainPicture(int width, int height, int channels, unsigned char value) {
  const auto size =
      static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * static_cast<std::size_t>(channels);
  return {width, height, channels, std::vector<unsigned char>(size, value)};
}

TPicture RandomPicture(int width, int height, int channels, unsigned seed) {
  std::mt19937 random(seed);
  TPicture picture = PlainPicture(width, height, channels, 0);
  for (unsigned char& byte : picture.pixels) byte = static_cast<unsigned char>(random());
  return picture;
}

TPicture DiscPicture(int width, int height, int xCentre, int yCentre, int diameter) {
  TPicture picture = PlainPicture(width, height, 3, 0);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      const int dx = x - xCentre, dy = y - yCentre;
      if (4 * (dx * dx + dy * dy) > diameter * diameter) continue;
      const std::size_t first =
          (static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x)) * 3;
      // A slope, since on an even ground rounding alone decides what the detector says.
      for (std::size_t k = 0; k < 3; ++k)
        picture.pixels[first + k] = static_cast<unsigned char>(200 + 100 * dx / diameter);
    }
  }
  return picture;
}

HImage EmptyImage() {
  HImage image = 0;
  EXPECT_EQ(VIZL_CreateEmptyImage(&image), VIZLE_OK);
  return image;
}

HImage ImageOf(const TPicture& picture) {
  HImage image = 0;
  EXPECT_EQ(VIZL_LoadImageFromBuffer(&image, picture.pixels.data(), picture.width, picture.height,
                                     picture.width * picture.channels, picture.mode()),
            VIZLE_OK);
  return image;
}

TPicture PictureOf(HImage image, int channels) {
  TPicture picture = PlainPicture(WidthOf(image), HeightOf(image), channels, 0);
  // A buffer of no bytes may have no address, which the call would refuse.
  if (!picture.pixels.empty()) {
    EXPECT_EQ(VIZL_SaveImageToBuffer(image, picture.pixels.data(), picture.mode()), VIZLE_OK);
  }
  return picture;
}

TView ViewOf(HImage image) {
  TView view;
  EXPECT_EQ(VIZL_GetImageData(image, &view.data, &view.width, &view.height, &view.scanLine, &view.mode), VIZLE_OK);
  return view;
}

int WidthOf(HImage image) {
  int width = -1;
  EXPECT_EQ(VIZL_GetImageWidth(image, &width), VIZLE_OK);
  return width;
}

int HeightOf(HImage image) {
  int height = -1;
  EXPECT_EQ(VIZL_GetImageHeight(image, &height), VIZLE_OK);
  return height;
}

bool IsValid(HImage image) {
  int width;
  return VIZL_GetImageWidth(image, &width) == VIZLE_OK;
}

void UseDiscDetector() {
  const Bytes stream = kDiscCascade.Stream();
  delete IppiFaceDetector;
  IppiFaceDetector = new TIppiFaceDetector(stream.data(), static_cast<unsigned>(stream.size()));
}

std::string TemporaryPath(const std::string& name) {
  static const Folder folder;
  const std::string path = folder / name;
  std::filesystem::remove_all(path);
  return path;
}

std::string SavedPicture(const TPicture& picture, const std::string& name) {
  const std::string path = TemporaryPath(name);
  const HImage image = ImageOf(picture);
  EXPECT_EQ(VIZL_SaveImageToFile(image, path.c_str()), VIZLE_OK);
  EXPECT_EQ(VIZL_FreeImage(image), VIZLE_OK);
  return path;
}
