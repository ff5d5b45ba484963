#include "detect/face_window.h"

#include <algorithm>
#include <cstdlib>
#include <vector>

#include "detect/TIppiFaceDetector.h"
#include "image/TIppiImage.h"
#include "image/params.h"
#include "image/view.h"

namespace {

constexpr double kFineStep = 1.5;   // degrees
constexpr float kCropScale = 0.7f;  // first scale on a crop, which the face fills about by half
constexpr int kCoarseStep = 15;     // degrees between the passes

// The square around the face of twice its width, reduced or enlarged to kCropSide. What lies outside the image
// is black.
void cropFace(TIppiImage& image, const FaceWindow& face, TIppiImage& crop) {
  const int x1 = face.xc - face.w;
  const int y1 = face.yc - face.w;
  const int x2 = face.xc + face.w;
  const int y2 = face.yc + face.w;
  if (TImageView::Fits(image, x1, y1, x2, y2)) {
    TImageView square(image, x1, y1, x2, y2);
    square.Resize(crop, kCropSide / square.Width);
  } else {
    TIppiImage square;
    image.CopyTo(square, x1, y1, x2, y2);
    square.Resize(crop, kCropSide / square.Width);
  }
}

}  // namespace

FaceWindow WindowOf(const TRectangle& rect) {
  const long long x1 = rect.x1;
  const long long y1 = rect.y1;
  const long long w = (std::llabs(rect.x2 - x1) + std::llabs(rect.y2 - y1)) / 2;
  return {static_cast<int>((x1 + rect.x2) / 2), static_cast<int>((y1 + rect.y2) / 2), static_cast<int>(w)};
}

double WorkingRatio(const TIppiImage& image, int context) {
  const double longer = ContextInternalResizeWidth(context);
  const double shorter = (longer + longer) / 3.0;
  if (image.Width < image.Height) return std::min(shorter / image.Width, longer / image.Height);
  return std::min(longer / image.Width, shorter / image.Height);
}

double CoarseAngle(int pass) { return (1 - pass) * kCoarseStep; }

FineResult SearchAngles(TIppiFaceDetector& detector, TIppiImage& image, const FaceWindow& face, double coarse,
                        int steps, int context) {
  TIppiImage crop;
  cropFace(image, face, crop);
  FineResult best;
  TIppiImage turned;
  std::vector<TRectangle> rects;
  for (int k = -steps; k <= steps; k++) {
    const double angle = coarse + k * kFineStep;
    crop.Rotate(turned, angle);
    detector.DetectFaceRaw(turned, rects, kCropScale);
    FineResult found;
    detector.ClusterFace(rects, found.rect.x1, found.rect.y1, found.rect.x2, found.rect.y2, found.count, context);
    found.angle = angle;
    if (found.count > best.count) best = found;
  }
  return best;
}
