#include "features/face_image.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstdint>

#include "api/vizl_api.h"
#include "features/face_frame.h"
#include "features/mean_grid.h"
#include "image/to_int.h"
#include "image/view.h"

namespace {

constexpr double kMeanFaceWidth = 150.0;  // of a detection of the mean face, pixels
// Angles are floats, and so is the pi that belongs to them: the results are compared to the bit.
constexpr float kPi = 3.1415927f;
// Twice the root of 2. The margin on each side lets the square of the frame turn without losing much.
constexpr double kMarginDivisor = 2.8284271247461903;

float scaleToFace(int longerSide) { return static_cast<float>(static_cast<double>(kFaceImageSide) / longerSide); }

void shift(TGrid& grid, int64_t dx, int64_t dy) { grid.Shift(static_cast<float>(dx), static_cast<float>(dy)); }

bool fitsInt(int64_t value) { return value >= INT32_MIN && value <= INT32_MAX; }

// Along one axis, in the order of the buffer: where a pixel comes to lie when Resize scales by `scale`. The area
// mean keeps the outer edge in place, the filter for enlarging the middle of the first pixel.
double resized(double pixel, double scale) { return scale < 1 ? (pixel + 0.5) * scale - 0.5 : pixel * scale; }

struct TCorners {
  int x1, y1, x2, y2;  // inclusive
};

// Reads the rectangle in place if it lies inside the image: the fresh pages of a copy cost more than the resize.
void cutAndResize(TIppiImage& image, const TCorners& r, float scale, TIppiImage& resized) {
  if (TImageView::Fits(image, r.x1, r.y1, r.x2, r.y2)) {
    TImageView(image, r.x1, r.y1, r.x2, r.y2).Resize(resized, static_cast<double>(scale));
    return;
  }
  TIppiImage cut(imGray8);
  image.CopyTo(cut, r.x1, r.y1, r.x2, r.y2);
  cut.Resize(resized, static_cast<double>(scale));
}

}  // namespace

int TFaceImage::Cut(TIppiImage& image, const TFacePosition& face) {
  imageSize = {image.Width, image.Height};
  if (!ExpectGrid(face)) return VIZLE_INVALID_ARGUMENT;
  TIppiImage reduced(imGray8), upright(imGray8);
  const int code = CutWide(image, reduced);
  if (code != VIZLE_OK) return code;
  TurnUpright(reduced, upright);
  CutFrame(upright);
  return VIZLE_OK;
}

// Puts the mean face where the detector says that the face is; its centre lies a tenth of the width above the
// detection's. False for numbers that a float can't hold.
bool TFaceImage::ExpectGrid(const TFacePosition& face) {
  const double turn = face.angle / -180 * static_cast<double>(kPi);
  if (face.w < 0 || !(std::abs(turn) <= static_cast<double>(FLT_MAX))) return false;
  int cx, cy;
  Expected.Assign(MeanGrid40);
  Expected.FindCenter(&cx, &cy);
  shift(Expected, -cx, -cy);
  Expected.Scale(static_cast<float>(face.w / kMeanFaceWidth));
  const double yc = face.yc - std::floor(0.1 * face.w + 0.5);
  Expected.Shift(static_cast<float>(face.xc), static_cast<float>(yc));
  Expected.RotateNB(face.xc, TruncateToInt(yc), static_cast<float>(turn));
  return true;
}

int TFaceImage::CutWide(TIppiImage& image, TIppiImage& reduced) {
  int x1, y1, x2, y2;
  CalculateFaceFramePositionNB(Expected, &x1, &y1, &x2, &y2, image.Width, image.Height);
  const int64_t side = static_cast<int64_t>(x2) - x1;
  const int64_t margin = TruncateToInt(static_cast<double>(side) / kMarginDivisor);
  const int64_t left = x1 - margin, top = y1 - margin, right = x2 + margin, bottom = y2 + margin;
  if (side < 0 || side + 2 * margin >= kMaxImageSide) return VIZLE_INVALID_ARGUMENT;
  if (!fitsInt(left) || !fitsInt(top) || !fitsInt(right) || !fitsInt(bottom)) return VIZLE_INVALID_ARGUMENT;
  wideLeft = static_cast<int>(left);
  wideTop = static_cast<int>(top);
  wideSize = {static_cast<int>(right - left + 1), static_cast<int>(bottom - top + 1)};
  shift(Expected, margin - x1, margin - y1);

  wideScale = scaleToFace(std::max(wideSize.width, wideSize.height));
  cutAndResize(image, {wideLeft, wideTop, static_cast<int>(right), static_cast<int>(bottom)}, wideScale, reduced);
  Expected.Scale(wideScale);
  return VIZLE_OK;
}

// The line of the eyes becomes level.
void TFaceImage::TurnUpright(TIppiImage& reduced, TIppiImage& upright) {
  reducedSize = {reduced.Width, reduced.Height};
  const TSPoint& left = Expected.Nodes[0];
  const TSPoint& right = Expected.Nodes[1];
  angle = static_cast<float>(std::atan2(static_cast<double>(right.y - left.y), static_cast<double>(right.x - left.x)));
  reduced.Rotate(upright, static_cast<double>(-angle / kPi * 180.0f));
  Expected.Rotate(reduced.Width, reduced.Height, -angle);
}

void TFaceImage::CutFrame(TIppiImage& upright) {
  int x1, y1, x2, y2;
  CalculateFaceFramePositionNB(Expected, &x1, &y1, &x2, &y2, upright.Width, upright.Height);
  frameLeft = x1;
  frameTop = y1;
  frameSide = std::max(x2 - x1, y2 - y1) + 1;
  shift(Expected, -static_cast<int64_t>(x1), -static_cast<int64_t>(y1));

  frameScale = scaleToFace(frameSide);
  Face.FloorResize = false;  // the networks need exactly 256 by 256
  cutAndResize(upright, {x1, y1, x2, y2}, frameScale, Face);
  Expected.Scale(frameScale);
}

void TFaceImage::BackToImage(TGrid& grid) const {
  grid.Scale(1 / frameScale);
  shift(grid, frameLeft, frameTop);
  grid.Scale(1 / wideScale);
  shift(grid, wideLeft, wideTop);
  grid.Rotate(imageSize.width, imageSize.height, angle);
}

// Follows the pixels through the steps of Cut. Where rows count from the top, the flip to the buffer's order and
// back stands before and after each step that starts at the buffer's first row.
TSPoint TFaceImage::PointInFace(TSPoint point) const {
  double x = resized(static_cast<double>(point.x) - wideLeft, static_cast<double>(wideScale));
  double row = resized(wideSize.height - 1 - (static_cast<double>(point.y) - wideTop), static_cast<double>(wideScale));

  const double cosine = std::cos(static_cast<double>(angle)), sine = std::sin(static_cast<double>(angle));
  const double dx = x - reducedSize.width / 2, dy = reducedSize.height / 2 - row;
  x = cosine * dx + sine * dy + reducedSize.width / 2;
  row = reducedSize.height / 2 - (cosine * dy - sine * dx);

  const double y = reducedSize.height - 1 - row;
  x = resized(x - frameLeft, static_cast<double>(frameScale));
  row = resized(frameSide - 1 - (y - frameTop), static_cast<double>(frameScale));
  return {static_cast<float>(x), static_cast<float>(kFaceImageSide - 1 - row)};
}
