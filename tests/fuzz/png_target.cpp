// A PNG file, from a buffer and from the disk, with and without alpha.
#include "tests/files/png_files.h"
#include "tests/fuzz/feedback.h"
#include "tests/fuzz/input.h"
#include "tests/fuzz/library.h"
#include "tests/fuzz/scratch.h"

namespace {

constexpr long long kMostPixels = 1 << 18;

// The kinds of chunks, each with the one before it, and the layout.
void noteChunks(const std::uint8_t* data, std::size_t size) {
  if (size < kPngHeaderEnd) return;
  noteEvent(1, bigEndian(data + 24));
  noteEvent(2, data[28]);
  std::uint32_t before = 0;
  for (std::size_t at = kPngSignatureBytes; at + kPngChunkFrame <= size;) {
    const std::uint32_t type = bigEndian(data + at + 4), length = bigEndian(data + at);
    noteEvent(3, type * 31 + before);
    before = type;
    if (length > size - at - kPngChunkFrame) return;
    at += length + kPngChunkFrame;
  }
}

// Taken from where the sides of every file stand.
bool tooLarge(const std::uint8_t* data, std::size_t size) {
  if (size < kPngHeaderEnd) return false;
  const std::uint64_t width = bigEndian(data + 16), height = bigEndian(data + 20);
  return width <= 65535 && height <= 65535 && width * height > kMostPixels;
}

void loadAll(const std::uint8_t* data, std::size_t size) {
  const std::vector<std::uint8_t> exact(data, data + size);
  Image image, withAlpha, fromFile;
  const int code = VIZL_LoadImageFromPngBuffer(image.Replace(), exact.data(), static_cast<unsigned>(size));
  if (size == 0) return;
  require(code == VIZLE_OK || code == VIZLE_IMAGE_IO_FAILED, "a code of a buffer");
  noteEvent(4, static_cast<std::uint32_t>(code));
  const int alphaCode =
      VIZL_LoadImageFromPngBufferWithAlpha(withAlpha.Replace(), exact.data(), static_cast<unsigned>(size));
  require(code == alphaCode, "alpha changes no code");
  const std::string path = writeScratch("in.png", data, size);
  const int fileCode = VIZL_LoadImageFromFileWithAlpha(fromFile.Replace(), path.c_str());
  require(fileCode == VIZLE_OK || fileCode == VIZLE_BAD_IMAGE_FILE, "a code of a file");
  require((code == VIZLE_OK) == (fileCode == VIZLE_OK), "buffer and file load alike");
  useLoaded(withAlpha, code == VIZLE_OK, ".png");
  useLoaded(image, code == VIZLE_OK, ".bmp");
  if (code != VIZLE_OK) return;
  noteEvent(5, static_cast<std::uint32_t>(image.Width() * 7 + image.Height()) % 64);
  if (image.Pixels() > 1 << 14) return;
  require(samePixels(withAlpha, fromFile), "buffer and file give the same");
  require(pixelsOf(image, VIZL_IMAGE_COLOR24) == pixelsOf(withAlpha, VIZL_IMAGE_COLOR24), "alpha changes no colour");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  openLibrary();
  if (tooLarge(data, size)) return 0;
  noteChunks(data, size);
  loadAll(data, size);
  requireNoImages();
  return 0;
}
