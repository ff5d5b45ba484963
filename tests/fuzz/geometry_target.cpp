// Ratios, angles, rectangles, points and frames on small pictures.
#include <cmath>

#include "features/TGrid.h"
#include "features/face_frame.h"
#include "framing/portrait_frame.h"
#include "image/TIppiImage.h"
#include "tests/fuzz/input.h"
#include "tests/fuzz/library.h"

namespace {

// Results above this many pixels take too long to be made thousands of times, unless they are refused.
constexpr int kMostPixels = 1 << 18;
constexpr double kFewestRefused = 2147483648.0;
constexpr int kImages = 3;

bool costly(double width, double height) {
  const double pixels = std::abs(width) * std::abs(height);
  return pixels > kMostPixels && pixels < kFewestRefused && std::abs(width) <= 65536 && std::abs(height) <= 65536;
}

void requireCode(std::int32_t code) {
  require(code == VIZLE_OK || code == VIZLE_INVALID_ARGUMENT, "a code of geometry");
}

void fill(const Image& image, FuzzInput& in) {
  const int width = in.Within(0, 60), height = in.Within(0, 60), mode = in.Within(0, 2);
  const auto bytes = in.Bytes(16);
  std::vector<unsigned char> pixels(static_cast<std::size_t>(width * height) * 4 + 1);
  for (std::size_t i = 0; i < pixels.size() && !bytes.empty(); ++i) {
    pixels[i] = static_cast<unsigned char>(bytes[i % bytes.size()] + i / 64);
  }
  const int step = width * (mode == VIZL_IMAGE_GRAY8 ? 1 : mode == VIZL_IMAGE_COLOR32 ? 4 : 3);
  requireCode(VIZL_AssignImageFromBuffer(image.Handle(), pixels.data(), width, height, step, mode));
}

void resize(const Image& from, const Image& to, FuzzInput& in) {
  const double ratio = in.Number();
  if (!costly(from.Width() * ratio, from.Height() * ratio))
    requireCode(VIZL_ResizeImage(from.Handle(), ratio, to.Handle()));
}

void rotate(const Image& from, const Image& to, FuzzInput& in) {
  const double angle = in.Number();
  const int width = from.Width();
  std::int32_t code = VIZLE_OK;
  if (in.Flag()) {
    const double x = in.Number(), y = in.Number();
    code = VIZL_RotateImageCenter(from.Handle(), angle, x, y, to.Handle());
  } else {
    code = VIZL_RotateImage(from.Handle(), angle, to.Handle());
  }
  require((code == VIZLE_OK) == std::isfinite(angle) || code == VIZLE_INVALID_ARGUMENT, "a turn by any finite angle");
  if (code == VIZLE_OK) require(to.Width() == width, "turning keeps the size");
}

void copyRect(const Image& from, const Image& to, FuzzInput& in) {
  const std::int32_t x1 = in.Whole(), y1 = in.Whole(), x2 = in.Flag() ? in.Whole() : x1,
                     y2 = in.Flag() ? in.Whole() : y1;
  const long long width = x2 - 1LL * x1 + 1, height = y2 - 1LL * y1 + 1;
  if (costly(static_cast<double>(width), static_cast<double>(height))) return;
  const std::int32_t code = VIZL_CopyRect(from.Handle(), x1, y1, x2, y2, to.Handle());
  requireCode(code);
  if (code == VIZLE_OK && width > 0 && height > 0)
    require(to.Width() == width && to.Height() == height, "the rectangle's size");
}

void overlay(const Image& from, const Image& to, const Image& ground, FuzzInput& in) {
  const std::int32_t x = in.Whole(), y = in.Whole();
  if (from.Pixels() <= kMostPixels / 64) {
    requireCode(VIZL_PutImageAdjustColors(from.Handle(), x, y, ground.Handle(), to.Handle()));
  }
}

void extract(const Image& from, FuzzInput& in) {
  TPoint points[40], found[40];
  const bool near = in.Flag();
  for (TPoint& point : points)
    point = near ? TPoint{in.Within(-9, 70), in.Within(-9, 70)} : TPoint{in.Whole(), in.Whole()};
  const int width = in.Flag() ? in.Within(-1, 300) : in.Whole(), height = in.Whole();
  int x1, y1, x2, y2;
  TGrid grid;
  for (const TPoint& point : points) grid.AddNode({static_cast<float>(point.x), static_cast<float>(point.y)});
  CalculateFaceFramePosition(grid, &x1, &y1, &x2, &y2, from.Width(), from.Height());
  CalculateFaceFramePositionNB(grid, &x1, &y1, &x2, &y2, width, height);
  const double side = static_cast<double>(x2) - x1;
  if (costly(side, side) || costly(width, width)) return;
  HImage face = 0;
  const std::int32_t code = VIZL_ExtractFaceImage(from.Handle(), &points, width, height, &face, &found);
  requireCode(code);
  if (code == VIZLE_OK) VIZL_FreeImage(face);
}

// A frame lies in the picture, whatever face and wish it was made for, and cuts to the wanted size.
void frame(FuzzInput& in) {
  const bool real = in.Flag();
  const TFacePosition face =
      real ? TFacePosition{in.Within(0, 255), in.Within(0, 255), in.Within(1, 200), 0, in.Number()}
           : TFacePosition{in.Whole(), in.Whole(), in.Whole(), 0, in.Number()};
  const int imageWidth = in.Within(1, 256), imageHeight = in.Within(1, 256);
  const TPortraitWish wish = {in.Flag() ? in.Within(1, 200) : in.Whole(), in.Flag() ? in.Within(1, 200) : in.Whole(),
                              in.Number(), in.Number(), in.Number()};
  TPortraitFrame found = {};
  const TPoint left = {in.Whole(), in.Whole()}, right = {in.Whole(), in.Whole()};
  const TFacePosition byEyes = FaceByEyes(face, left, right);
  for (const TFacePosition& position : {face, byEyes}) {
    if (!wish.valid() || !CalculatePortraitFrame(position, imageWidth, imageHeight, wish, found)) continue;
    if (real && position.w == face.w)
      require(found.x2 >= found.x1 - 1 && found.y2 >= found.y1 - 1, "a frame has corners in order");
    const double width = found.x2 - 1.0 * found.x1 + 1, height = found.y2 - 1.0 * found.y1 + 1;
    if (wish.width > 300 || wish.height > 300 || !(width >= 1) || !(height >= 1) || width > 512 || height > 512)
      continue;
    if (std::max(wish.width / width, wish.height / height) * std::max(width, height) > 2000) continue;
    TIppiImage image(imRGB24), portrait;
    image.AllocNew(imageWidth, imageHeight);
    CutPortrait(image, found, wish.width, wish.height, portrait);
    require(portrait.Width == wish.width && portrait.Height == wish.height, "a portrait of the size asked for");
  }
}

void once(FuzzInput& in, const Image (&images)[kImages]) {
  const unsigned operation = in.Byte() % 8;
  const Image& from = images[in.Byte() % kImages];
  const Image& to = images[in.Byte() % kImages];
  if (operation == 0) fill(to, in);
  if (operation == 1) resize(from, to, in);
  if (operation == 2) rotate(from, to, in);
  if (operation == 3) copyRect(from, to, in);
  if (operation == 4) overlay(from, to, images[in.Byte() % kImages], in);
  if (operation == 5) extract(from, in);
  if (operation == 6) frame(in);
  if (operation == 7) requireCode(VIZL_CopyImage(from.Handle(), to.Handle()));
  if (to.Pixels() <= kMostPixels / 16) pixelsOf(to, static_cast<VIZL_IMAGEMODE>(operation % 3));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  openLibrary();
  FuzzInput in(data, size);
  {
    const Image images[kImages];
    for (const Image& image : images) fill(image, in);
    for (int i = 0; i < 12 && !in.Empty(); ++i) once(in, images);
  }
  requireNoImages();
  return 0;
}
