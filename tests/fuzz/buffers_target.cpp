// Raw pixels into handles and out of them, with sizes, steps and layouts of every kind.
#include <algorithm>

#include "tests/fuzz/input.h"
#include "tests/fuzz/library.h"

namespace {

constexpr long long kMostBytes = 1 << 16, kMostPixels = 1 << 16;

struct Raw {
  std::int32_t width, height, scanLine, mode;

  int Channels() const { return mode == VIZL_IMAGE_GRAY8 ? 1 : mode == VIZL_IMAGE_COLOR32 ? 4 : 3; }
  long long RowBytes() const { return 1LL * std::max(width, 0) * Channels(); }
  // From the first byte of the lowest row in memory to behind the last of the highest.
  long long Span() const {
    if (width <= 0 || height <= 0) return 0;
    return std::abs(1LL * scanLine) * (height - 1LL) + RowBytes();
  }
  // Sizes that are refused before a pixel is read, so there is no need for pixels.
  bool TooLong() const { return width > 65535 || height > 65535; }
  // A step of few bytes spreads few bytes over many pixels.
  bool Costly() const { return Span() > kMostBytes || (width > 0 && height > 0 && 1LL * width * height > kMostPixels); }
};

Raw draw(FuzzInput& in) {
  Raw raw{in.Whole(), in.Whole(), 0, in.Within(-1, 3)};
  if (in.Flag()) raw.width = in.Within(1, 70);
  if (in.Flag()) raw.height = in.Within(1, 40);
  const unsigned kind = in.Byte() % 4;
  const auto row = static_cast<std::int32_t>(std::min(raw.RowBytes(), 1LL << 20));
  raw.scanLine = kind == 0 ? row : kind == 1 ? -row : kind == 2 ? row + in.Within(0, 40) : in.Whole();
  return raw;
}

// `pixels` are all that the call may read; row 0 starts where `scanLine` has it.
int32_t load(const Raw& raw, const std::vector<unsigned char>& pixels, Image& image, bool assign) {
  const bool backwards = raw.scanLine < 0 && raw.height > 0 && !pixels.empty() && raw.Span() > 0;
  static const unsigned char kNothing = 0;
  const unsigned char* first = pixels.empty() ? &kNothing : pixels.data();
  if (backwards) first += raw.Span() - raw.RowBytes();
  if (assign) return VIZL_AssignImageFromBuffer(image.Handle(), first, raw.width, raw.height, raw.scanLine, raw.mode);
  return VIZL_LoadImageFromBuffer(image.Replace(), first, raw.width, raw.height, raw.scanLine, raw.mode);
}

void requireRowsKept(const Raw& raw, const std::vector<unsigned char>& pixels, const Image& image) {
  if (raw.Channels() == 1 || raw.width <= 0 || raw.height <= 0) return;
  const std::vector<unsigned char> copy =
      pixelsOf(image, raw.Channels() == 3 ? VIZL_IMAGE_COLOR24 : VIZL_IMAGE_COLOR32);
  const long long first = raw.scanLine < 0 ? raw.Span() - raw.RowBytes() : 0;
  for (long long y = 0; y < raw.height; ++y) {
    const auto row = pixels.begin() + (first + y * raw.scanLine);
    require(std::equal(row, row + raw.RowBytes(), copy.begin() + y * raw.RowBytes()),
            "pixels come out as they went in");
  }
}

void once(FuzzInput& in, Image& image) {
  const Raw raw = draw(in);
  const bool assign = in.Flag();
  if (!raw.TooLong() && raw.Costly()) return;
  const auto bytes = in.Bytes(256);
  std::vector<unsigned char> pixels(raw.TooLong() ? 0 : static_cast<std::size_t>(raw.Span()));
  for (std::size_t i = 0; i < pixels.size(); ++i) pixels[i] = bytes.empty() ? 0 : bytes[i % bytes.size()];
  const int32_t code = load(raw, pixels, image, assign);
  require(code == VIZLE_OK || code == VIZLE_INVALID_ARGUMENT, "a code of a buffer");
  if (code != VIZLE_OK) return;
  if (raw.width > 0 && raw.height > 0)
    require(image.Width() == raw.width && image.Height() == raw.height, "the size given");
  requireRowsKept(raw, pixels, image);
  for (const VIZL_IMAGEMODE mode : {-1, 0, 1, 2, 3}) pixelsOf(image, mode);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  openLibrary();
  FuzzInput in(data, size);
  {
    Image image;
    for (int i = 0; i < 8 && !in.Empty(); ++i) once(in, image);
  }
  requireNoImages();
  return 0;
}
