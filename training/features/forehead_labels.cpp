#include "training/features/forehead_labels.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr std::size_t kNose = 2, kTop = 5, kLeftTemple = 8, kRightTemple = 9, kChin = 29;
// The other nodes at the sides of the face.
constexpr std::size_t kSides[] = {10, 11, 12, 13, 30, 31, 32, 33};
// The temples stand out, so that they and no other node span the box; pixels of the frame.
constexpr float kMargin = 1.5F;

struct Middle {
  float x, y;
};

// Least squares fit of the middle of the frame over the detected faces of the training set, by the place of the nose
// tip against the pupils; in units of the pupils' distance what doesn't depend on the nose.
Middle detectedMiddle(const std::array<float, 80>& points) {
  const float x = (points[0] + points[2]) / 2, y = (points[1] + points[3]) / 2;
  const float distance = std::hypot(points[2] - points[0], points[3] - points[1]);
  return {x + 0.124F * (points[2 * kNose] - x) + 0.007F * distance,
          y + 0.17F * (points[2 * kNose + 1] - y) - 0.129F * distance};
}

}  // namespace

void placeForehead(std::array<float, 80>& points) {
  const Middle middle = detectedMiddle(points);
  float reach = 0;
  for (const std::size_t n : kSides) reach = std::max(reach, std::abs(points[2 * n] - middle.x));
  points[2 * kLeftTemple] = middle.x - reach - kMargin;
  points[2 * kRightTemple] = middle.x + reach + kMargin;
  points[2 * kTop + 1] = 2 * middle.y - points[2 * kChin + 1];
}
