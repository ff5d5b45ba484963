#include "portrait_frame.h"

#include <algorithm>
#include <cmath>

#include "failure.h"
#include "head_measure.h"

namespace {

// Frames beyond this many pixels to a side are no portraits, and no image can hold them.
constexpr double kLargestHalf = 32000;

// The natural frame is 1.2 faces along its shorter side.
constexpr double kHalfSideByFace = 0.6;
// The width of a face in distances of its eyes.
constexpr double kFaceByEyes = 2.4;

struct FacePlace {
  int32_t xc;
  int32_t yc;
  int32_t w;
};

FacePlace placeByEyes(const FacePoints& found) {
  const TPoint a = found.points[0];
  const TPoint b = found.points[1];
  const int64_t dx = int64_t{a.x} - b.x;
  const int64_t dy = int64_t{a.y} - b.y;
  const float squares = static_cast<float>(dx * dx) + static_cast<float>(dy * dy);
  return {(a.x + b.x) / 2, (a.y + b.y) / 2, static_cast<int32_t>(kFaceByEyes * std::sqrt(double{squares}))};
}

// In the precision that the library uses, so that both give the same frame.
NaturalFrame frameAround(const FacePlace& place, Size size) {
  const double base = kHalfSideByFace * place.w;
  const double ratio = static_cast<double>(size.width) / size.height;
  if (ratio >= 1) return {place.xc, place.yc, std::trunc(static_cast<float>(ratio) * base), std::trunc(base)};
  return {place.xc, place.yc, std::trunc(base), std::trunc(base * (1 / ratio))};
}

NaturalFrame frameAroundHead(const HeadFraming& wanted, const HeadMeasure& head, Size size) {
  const double height = head.height / wanted.headHeight;
  const double width = height * size.width / size.height;
  const double yc = head.eyes.y + (0.5 - wanted.eyesFromTop) * height;
  return {static_cast<int32_t>(std::lround(head.eyes.x)), static_cast<int32_t>(std::lround(yc)), 0.5 * width,
          0.5 * height};
}

// How far a centre may go: 83 percent of the half frame stay inside.
int32_t heldCentre(int32_t wanted, double half, int32_t side) {
  const double lowest = std::min(0.83 * half, static_cast<double>(side / 2));
  const double highest = std::min(side - 1 - 0.83 * half, static_cast<double>(wanted));
  return static_cast<int32_t>(std::max(lowest, highest));
}

// The part of the half frame that fits; 0.9 and 0.1 keep the truncated corners inside.
float fit(int32_t centre, double half, int32_t side) {
  return static_cast<float>(std::min((centre + 0.9) / half, (side - centre - 0.1) / half));
}

Frame frameOf(int32_t xc, int32_t yc, double halfWidth, double halfHeight, float factor) {
  const auto dx = static_cast<int32_t>(static_cast<float>(halfWidth) * factor);
  const auto dy = static_cast<int32_t>(static_cast<float>(halfHeight) * factor);
  return {xc - dx, yc - dy, xc + dx, yc + dy};
}

}  // namespace

bool framingNeedsPoints(Framing framing) { return framing != Framing::kFace; }

NaturalFrame naturalFrame(const CutOptions& options, const TFacePosition& face, const FacePoints* points) {
  NaturalFrame frame;
  if (options.framing == Framing::kHead) {
    frame = frameAroundHead(options.head, measureHead(*points), options.size);
  } else if (options.framing == Framing::kEyes) {
    frame = frameAround(placeByEyes(*points), options.size);
  } else {
    frame = frameAround({face.xc, face.yc, face.w}, options.size);
  }
  const double shiftedX = frame.xc + 2 * frame.halfWidth * options.shiftX;
  const double shiftedY = frame.yc + 2 * frame.halfHeight * options.shiftY;
  const double half = std::max(frame.halfWidth, frame.halfHeight) / options.faceScale;
  if (!(half <= kLargestHalf) || !(std::abs(shiftedX) < 1e9) || !(std::abs(shiftedY) < 1e9)) {
    throw Failure("the portrait's frame would be too large");
  }
  if (frame.halfWidth < 1 || frame.halfHeight < 1) throw Failure("the face is too small for a portrait");
  frame.xc = static_cast<int32_t>(shiftedX);
  frame.yc = static_cast<int32_t>(shiftedY);
  return frame;
}

Frame freeFrame(const NaturalFrame& natural, double faceScale) {
  return frameOf(natural.xc, natural.yc, natural.halfWidth, natural.halfHeight, static_cast<float>(1 / faceScale));
}

Frame heldFrame(const NaturalFrame& natural, double faceScale, Size picture) {
  const int32_t xc = heldCentre(natural.xc, natural.halfWidth, picture.width);
  const int32_t yc = heldCentre(natural.yc, natural.halfHeight, picture.height);
  float factor = std::min(fit(xc, natural.halfWidth, picture.width), fit(yc, natural.halfHeight, picture.height));
  if (1 / faceScale < double{factor}) factor = static_cast<float>(1 / faceScale);
  return frameOf(xc, yc, natural.halfWidth, natural.halfHeight, factor);
}
