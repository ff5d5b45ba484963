// A JPEG file, from a buffer and from the disk.
#include "tests/fuzz/input.h"
#include "tests/fuzz/library.h"
#include "tests/fuzz/scratch.h"
#include "tests/fuzz/trace_jpeg.h"

namespace {

// What larger pictures cost is measured elsewhere; here they would take the time of thousands of small ones.
constexpr long long kMostPixels = 1 << 18;

void loadBoth(const std::uint8_t* data, std::size_t size) {
  // A copy of the exact size, so that a sanitizer sees a read past its end.
  const std::vector<std::uint8_t> exact(data, data + size);
  Image image, fromFile;
  const int code = VIZL_LoadImageFromJpegBuffer(image.Replace(), exact.data(), static_cast<unsigned>(size));
  if (size == 0) return;
  require(code == VIZLE_OK || code == VIZLE_IMAGE_IO_FAILED, "a code of a buffer");
  const std::string path = writeScratch("in.jpg", data, size);
  const bool withAlpha = (size & 1) != 0;
  const auto load = withAlpha ? VIZL_LoadImageFromFileWithAlpha : VIZL_LoadImageFromFile;
  const int fileCode = load(fromFile.Replace(), path.c_str());
  require(fileCode == VIZLE_OK || fileCode == VIZLE_BAD_IMAGE_FILE, "a code of a file");
  require((code == VIZLE_OK) == (fileCode == VIZLE_OK), "buffer and file load alike");
  useLoaded(image, code == VIZLE_OK, ".jpg");
  if (code == VIZLE_OK && image.Pixels() <= 1 << 14)
    require(samePixels(image, fromFile), "buffer and file give the same");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  openLibrary();
  if (traceJpeg(data, size, kMostPixels) > kMostPixels) return 0;
  loadBoth(data, size);
  requireNoImages();
  return 0;
}
