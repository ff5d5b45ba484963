// A BMP file.
#include "tests/fuzz/input.h"
#include "tests/fuzz/library.h"
#include "tests/fuzz/scratch.h"

namespace {

constexpr long long kMostPixels = 1 << 18;
constexpr std::size_t kHeaderBytes = 54, kWidthAt = 18;

bool tooLarge(const std::uint8_t* data, std::size_t size) {
  if (size < kHeaderBytes) return false;
  std::int32_t sides[2];
  std::memcpy(sides, data + kWidthAt, sizeof sides);
  return sides[0] > 0 && sides[1] > 0 && sides[0] <= 65535 && sides[1] <= 65535 &&
         1LL * sides[0] * sides[1] > kMostPixels;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  openLibrary();
  if (tooLarge(data, size)) return 0;
  {
    const std::string path = writeScratch("in.bmp", data, size);
    Image image, withAlpha;
    const int code = VIZL_LoadImageFromFile(image.Replace(), path.c_str());
    require(code == VIZLE_OK || code == VIZLE_BAD_IMAGE_FILE, "a code of a file");
    const int alphaCode = VIZL_LoadImageFromFileWithAlpha(withAlpha.Replace(), path.c_str());
    require(code == alphaCode, "alpha changes no code");
    useLoaded(image, code == VIZLE_OK, ".bmp");
    if (code == VIZLE_OK && image.Pixels() <= 1 << 14)
      require(samePixels(image, withAlpha), "a bitmap's alpha is not read");
  }
  requireNoImages();
  return 0;
}
