// Faces, points, eyes and portraits in tiny pictures with settings and positions of every kind.
#include "tests/fuzz/input.h"
#include "tests/fuzz/library.h"

namespace {

bool isOneOf(std::int32_t code, std::initializer_list<std::int32_t> codes) {
  for (const std::int32_t known : codes) {
    if (code == known) return true;
  }
  return false;
}

bool isDetection(std::int32_t code) {
  return isOneOf(code, {VIZLE_OK, VIZLE_NO_FACE, VIZLE_IMAGE_TOO_SMALL, VIZLE_INVALID_ARGUMENT});
}

void fill(const Image& image, FuzzInput& in) {
  const int width = in.Within(1, 64), height = in.Within(1, 64);
  const unsigned kind = in.Byte() % 4;
  const auto bytes = in.Bytes(kind == 0 ? 64 * 64 : 24);
  std::vector<unsigned char> pixels(static_cast<std::size_t>(width * height));
  for (std::size_t i = 0; i < pixels.size() && !bytes.empty(); ++i) {
    const std::size_t at = kind < 2    ? i
                           : kind == 2 ? i / static_cast<std::size_t>(width)
                                       : i % static_cast<std::size_t>(width);
    pixels[i] = static_cast<unsigned char>(bytes[at % bytes.size()] + (kind == 1 ? i / 32 : 0));
  }
  VIZL_AssignImageFromBuffer(image.Handle(), pixels.data(), width, height, width, VIZL_IMAGE_GRAY8);
}

// 0, which is no context of anyone, or one of ours; sometimes one that is none.
class Context {
 public:
  explicit Context(FuzzInput& in) {
    VIZL_CreateContext_ID(&id_);
    // The search for the angle costs most by far, so it comes seldom; so do wide working pictures.
    const bool rotations = in.Flag(), angle = in.Byte() % 8 == 1;
    const int width = in.Byte() % 8 == 1 ? in.Within(-1, 120) : in.Within(20, 40);
    require((VIZL_SetFaceDetectionParameters_C(rotations, angle, width, id_) == VIZLE_OK) == (width >= 20),
            "widths from 20");
    const std::int32_t threshold = in.Flag() ? in.Within(0, 4) : in.Whole();
    require((VIZL_SetFaceDetectionThreshold_C(threshold, id_) == VIZLE_OK) == (threshold >= 1), "thresholds from 1");
    unknown_ = in.Byte() % 32 == 0;
  }
  ~Context() { VIZL_FreeContext_ID(id_); }
  Context(const Context&) = delete;
  Context& operator=(const Context&) = delete;

  ContextID Id() const { return unknown_ ? id_ + 1000 : id_; }

 private:
  ContextID id_ = 0;
  bool unknown_ = false;
};

// Positions as detections tell them, and others. Crops that would take seconds are left out.
TFacePosition drawFace(FuzzInput& in) {
  TFacePosition face = {in.Within(-40, 100), in.Within(-40, 100), in.Within(0, 90), 0, in.Number()};
  if (in.Byte() % 4 == 0) face = {in.Whole(), in.Whole(), in.Whole(), 0, in.Number()};
  if (face.w > 2000 && face.w <= 65535) face.w %= 2000;
  // The frame of a face beyond the grids' reach spans all the way to it.
  for (std::int32_t* const place : {&face.xc, &face.yc}) {
    if (std::abs(*place / 5000) != 0 && std::abs(*place / 100000) == 0) *place %= 5000;
  }
  return face;
}

void detect(const Image& image, ContextID context) {
  TFacePosition face = {};
  const std::int32_t code = VIZL_DetectFace_C(image.Handle(), &face, context);
  require(isDetection(code), "a code of a detection");
  require((code == VIZLE_OK) == (face.w > 0) || code == VIZLE_IMAGE_TOO_SMALL, "a face has a width");
}

void detectAll(const Image& image, ContextID context, FuzzInput& in) {
  TFacePosition faces[3] = {};
  std::int32_t count = 0;
  const int room = in.Within(-1, static_cast<int>(sizeof faces));
  const std::int32_t code = VIZL_DetectMultipleFaces_C(image.Handle(), &count, faces, room, context);
  require(isDetection(code) || code == VIZLE_BUFFER_TOO_SMALL, "a code of a detection");
  require(count >= 0 && count <= room / 24, "no more faces than there is room for");
}

void requireInside(const Image& image, const TPoint* points, int count) {
  for (int i = 0; i < count; ++i) {
    require(points[i].x >= 0 && points[i].x < image.Width() && points[i].y >= 0 && points[i].y < image.Height(),
            "points lie in the picture");
  }
}

void findEyes(const Image& image, FuzzInput& in) {
  TPoint points[40] = {};
  const TFacePosition face = drawFace(in);
  const std::int32_t code = VIZL_DetectEyesInRegion(image.Handle(), &face, &points);
  require(isOneOf(code, {VIZLE_OK, VIZLE_INVALID_ARGUMENT}), "a code of the eyes");
  if (code == VIZLE_OK) requireInside(image, points, 2);
}

void findPoints(const Image& image, FuzzInput& in) {
  TPoint points[40] = {};
  float confidences[40] = {};
  const TFacePosition face = drawFace(in);
  // A search of full length costs a thousand of the other calls.
  NeedInterrupt = in.Byte() % 64 != 1;
  const std::int32_t code = VIZL_DetectFacialFeaturesInRegionEx(image.Handle(), &face, &points, &confidences);
  NeedInterrupt = 0;
  require(isOneOf(code, {VIZLE_OK, VIZLE_INVALID_ARGUMENT}), "a code of the points");
  if (code == VIZLE_OK) requireInside(image, points, 40);
}

void cut(const Image& image, ContextID context, FuzzInput& in) {
  std::int32_t x1 = 0, y1 = 0, x2 = 0, y2 = 0;
  const int width = in.Within(0, 120), height = in.Within(0, 120);
  const double scale = in.Number(), shiftX = in.Number(), shiftY = in.Number();
  const Image portrait;
  NeedInterrupt = 1;
  const bool eyes = in.Flag();
  const bool place = in.Flag();
  const std::int32_t code = place ? VIZL_GetFacePosition_C(image.Handle(), width, height, scale, shiftX, shiftY, eyes,
                                                           &x1, &y1, &x2, &y2, context)
                                  : VIZL_PortraitCut_C(image.Handle(), width, height, scale, shiftX, shiftY, eyes,
                                                       portrait.Handle(), context);
  NeedInterrupt = 0;
  require(isDetection(code), "a code of a portrait");
  if (place) return;
  if (code == VIZLE_OK)
    require(portrait.Width() == width && portrait.Height() == height, "a portrait of the size asked for");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  openLibrary();
  FuzzInput in(data, size);
  {
    const Image image;
    const Context context(in);
    const unsigned what = in.Byte();
    fill(image, in);
    if (what % 8 < 2) detect(image, context.Id());
    if (what % 8 == 2 || what % 8 == 3) detectAll(image, context.Id(), in);
    if (what % 8 == 4) cut(image, context.Id(), in);
    if (what % 8 == 5 || what % 8 == 6) findEyes(image, in);
    if (what % 8 == 7) findPoints(image, in);
  }
  requireNoImages();
  return 0;
}
