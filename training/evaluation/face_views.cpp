#include "training/evaluation/face_views.h"

#include <algorithm>

#include "detect/TIppiFaceDetector.h"
#include "training/evaluation/detection.h"
#include "training/evaluation/matching.h"
#include "training/evaluation/turning.h"

namespace evaluation {

const std::array<std::size_t, 40> kMirroredNodes = {1,  0,  2,  4,  3,  5,  7,  6,  9,  8,  11, 10, 13, 12,
                                                    15, 14, 19, 18, 17, 16, 20, 21, 22, 26, 25, 24, 23, 28,
                                                    27, 29, 31, 30, 33, 32, 35, 34, 37, 36, 39, 38};

FaceSquare squareOf(const FacePoints& points) {
  FaceLabel label{};
  label.nodes = points;
  return faceSquare(label);
}

void copyView(FaceView& view, FaceView& copy) {
  copy.picture.Assign(view.picture);
  copy.points = view.points;
}

void turnView(FaceView& view, double degrees, FaceView& turned) {
  const FaceSquare square = squareOf(view.points);
  // The picture turns about a pixel's middle.
  turnPicture(view.picture, degrees, square.xc - 0.5, square.yc - 0.5, turned.picture);
  turned.points = turnedPoints(view.points, {square.xc, square.yc}, degrees);
}

// Resizing keeps the picture's left and bottom edge in place.
bool reduceView(FaceView& view, double width, FaceView& reduced) {
  const double ratio = width / squareOf(view.points).w;
  if (ratio >= 1) return false;
  view.picture.Resize(reduced.picture, ratio);
  for (std::size_t n = 0; n < view.points.size(); ++n) {
    const double fromBottom = view.picture.Height - view.points[n].y;
    reduced.points[n] = {view.points[n].x * ratio, reduced.picture.Height - fromBottom * ratio};
  }
  return true;
}

void mirrorView(FaceView& view, FaceView& mirrored) {
  copyView(view, mirrored);
  TIppiImage& picture = mirrored.picture;
  for (int y = 0; y < picture.Height; ++y) {
    unsigned char* const row = picture.Pixels + static_cast<std::ptrdiff_t>(y) * picture.Step;
    std::reverse(row, row + picture.Width);
  }
  for (std::size_t n = 0; n < view.points.size(); ++n) {
    const LabelledPoint& other = view.points[kMirroredNodes[n]];
    mirrored.points[n] = {picture.Width - other.x, other.y};
  }
}

std::optional<TFacePosition> detectedFace(TIppiFaceDetector& detector, TIppiImage& gray, const FaceSquare& square) {
  const auto result = judge(square, detectAll(detector, gray).faces, {});
  if (!result.found) return {};
  const Detection& found = *result.found;
  return TFacePosition{static_cast<int>(found.cx), static_cast<int>(found.cy), static_cast<int>(found.w), 0,
                       found.angle};
}

}  // namespace evaluation
