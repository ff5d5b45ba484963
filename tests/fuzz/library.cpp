#include "tests/fuzz/library.h"

#include "tests/fuzz/input.h"
#include "tests/fuzz/scratch.h"

namespace {

constexpr VIZL_IMAGEMODE kModes[] = {VIZL_IMAGE_GRAY8, VIZL_IMAGE_COLOR24, VIZL_IMAGE_COLOR32};
// Pictures above this are only looked at.
constexpr long long kCheapPixels = 1 << 15;

void requireSoundView(const Image& image, bool succeeded) {
  unsigned char* data = nullptr;
  int32_t width = 0, height = 0, scanLine = 0;
  VIZL_IMAGEMODE mode = VIZL_IMAGE_GRAY8;
  require(VIZL_GetImageData(image.Handle(), &data, &width, &height, &scanLine, &mode) == VIZLE_OK, "a view");
  require(width == image.Width() && height == image.Height(), "one size");
  require(!succeeded || (data != nullptr && image.Pixels() > 0), "a picture that was loaded has pixels");
  const int channels = mode == VIZL_IMAGE_COLOR32 ? 4 : mode == VIZL_IMAGE_COLOR24 ? 3 : 1;
  require(data == nullptr || scanLine >= width * channels, "rows have room");
}

void readPixels(const Image& image, bool succeeded) {
  for (const VIZL_IMAGEMODE mode : kModes) {
    int32_t size = 0;
    if (VIZL_GetImageBufferSize(image.Handle(), &size, mode) != VIZLE_OK) continue;
    std::vector<unsigned char> pixels(static_cast<std::size_t>(size));
    const int code = VIZL_SaveImageToBuffer(image.Handle(), pixels.data(), mode);
    require(!succeeded || code == VIZLE_OK, "a copy of the pixels");
  }
}

}  // namespace

void openLibrary() {
  static const bool open = VIZL_Initialize(nullptr) == VIZLE_OK;
  require(open, "the library initialises");
}

int Image::Width() const {
  int32_t width = 0;
  require(VIZL_GetImageWidth(handle_, &width) == VIZLE_OK, "a width");
  return width;
}

int Image::Height() const {
  int32_t height = 0;
  require(VIZL_GetImageHeight(handle_, &height) == VIZLE_OK, "a height");
  return height;
}

std::vector<unsigned char> pixelsOf(const Image& image, VIZL_IMAGEMODE mode) {
  int32_t size = 0;
  require(VIZL_GetImageBufferSize(image.Handle(), &size, mode) == VIZLE_OK, "a buffer size");
  std::vector<unsigned char> pixels(static_cast<std::size_t>(size));
  if (size == 0) return pixels;
  require(VIZL_SaveImageToBuffer(image.Handle(), pixels.data(), mode) == VIZLE_OK, "a copy of the pixels");
  return pixels;
}

bool samePixels(const Image& one, const Image& other) {
  return one.Width() == other.Width() && one.Height() == other.Height() &&
         pixelsOf(one, VIZL_IMAGE_COLOR32) == pixelsOf(other, VIZL_IMAGE_COLOR32);
}

void useLoaded(const Image& image, bool succeeded, const std::string& extension) {
  requireSoundView(image, succeeded);
  if (image.Pixels() > kCheapPixels) return;
  readPixels(image, succeeded);
  Image other;
  const int side = image.Width() + image.Height();
  const int scaled = VIZL_ResizeImage(image.Handle(), side % 3 == 0 ? 1.5 : 0.4, other.Handle());
  const int turned = VIZL_RotateImage(image.Handle(), side % 360, other.Handle());
  const std::string path = scratchPath("saved" + extension);
  const int saved = VIZL_SaveImageToFile(image.Handle(), path.c_str());
  if (!succeeded) return;
  require(scaled == VIZLE_OK && turned == VIZLE_OK && saved == VIZLE_OK, "scaling, turning and saving");
  require(VIZL_LoadImageFromFile(other.Replace(), path.c_str()) == VIZLE_OK, "loading what was saved");
  require(image.Width() == other.Width() && image.Height() == other.Height(), "the size that was saved");
}

void requireNoImages() {
  const Image first;
  require(first.Handle() == 0, "every image was freed");
}
