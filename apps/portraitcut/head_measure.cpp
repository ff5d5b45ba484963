#include "head_measure.h"

#include <cmath>

namespace {

// Indices of the points, in the order that the library's header tells.
constexpr size_t kLeftEye = 0;
constexpr size_t kRightEye = 1;
constexpr size_t kLeftSide = 10;
constexpr size_t kRightSide = 11;
constexpr size_t kChin = 29;

// No point marks the crown. The eyes of an adult lie halfway between crown and chin, within a few percent.
constexpr double kHeightByChinDistance = 2.0;

double distance(TPoint a, TPoint b) { return std::hypot(a.x - b.x, a.y - b.y); }

}  // namespace

HeadMeasure measureHead(const FacePoints& found) {
  const auto& points = found.points;
  HeadMeasure head{};
  head.eyes = {0.5 * (points[kLeftEye].x + points[kRightEye].x), 0.5 * (points[kLeftEye].y + points[kRightEye].y)};
  head.eyeDistance = distance(points[kLeftEye], points[kRightEye]);
  head.tilt = std::atan2(points[kLeftEye].y - points[kRightEye].y, points[kRightEye].x - points[kLeftEye].x) * 180.0 /
              std::acos(-1.0);
  head.chinDistance = std::hypot(points[kChin].x - head.eyes.x, points[kChin].y - head.eyes.y);
  head.height = kHeightByChinDistance * head.chinDistance;
  head.width = distance(points[kLeftSide], points[kRightSide]);
  return head;
}
