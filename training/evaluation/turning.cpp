#include "training/evaluation/turning.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "image/TIppiImage.h"

namespace evaluation {

namespace {

// How far outside the picture its own corners come from when it is turned about the point, in pixels.
int borderFor(const TIppiImage& gray, double degrees, double xCenter, double yCenter) {
  const double c = std::cos(degrees * std::numbers::pi / 180);
  const double s = std::sin(degrees * std::numbers::pi / 180);
  double outside = 0;
  for (const double x : {-xCenter, gray.Width - 1 - xCenter}) {
    for (const double y : {-yCenter, gray.Height - 1 - yCenter}) {
      const double fromX = xCenter + c * x + s * y;
      const double fromY = yCenter - s * x + c * y;
      outside = std::max({outside, -fromX, fromX - (gray.Width - 1), -fromY, fromY - (gray.Height - 1)});
    }
  }
  return static_cast<int>(std::ceil(outside)) + 2;
}

}  // namespace

void turnPicture(TIppiImage& gray, double degrees, double xCenter, double yCenter, TIppiImage& turned) {
  const int border = borderFor(gray, degrees, xCenter, yCenter);
  TIppiImage large;
  gray.CopyToReplicateBorder(large, -border, -border, gray.Width - 1 + border, gray.Height - 1 + border);
  TIppiImage rotated;
  large.RotateCenter(rotated, degrees, xCenter + border, yCenter + border);
  rotated.CopyTo(turned, border, border, border + gray.Width - 1, border + gray.Height - 1);
}

FaceSquare turnedSquare(const FaceSquare& square, double degrees) {
  FaceSquare result = square;
  result.roll += degrees;
  return result;
}

}  // namespace evaluation
