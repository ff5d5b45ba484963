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

// Where the picture was turned about: a least squares fit over detected faces of the training set, as they are and
// turned by 10 degrees to either side, by the place of the nose tip against the pupils; in units of the pupils'
// distance what doesn't depend on the nose. It leaves 2.5 pixels along x and 2.6 along y (root of the mean square).
Middle turnedAbout(const std::array<float, 80>& points) {
  const float x = (points[0] + points[2]) / 2, y = (points[1] + points[3]) / 2;
  const float distance = std::hypot(points[2] - points[0], points[3] - points[1]);
  return {x + 0.193F * (points[2 * kNose] - x) + 0.014F * distance,
          y + 0.159F * (points[2 * kNose + 1] - y) - 0.152F * distance};
}

}  // namespace

void placeForehead(std::array<float, 80>& points) {
  const Middle middle = turnedAbout(points);
  float reach = 0;
  for (const std::size_t n : kSides) reach = std::max(reach, std::abs(points[2 * n] - middle.x));
  points[2 * kLeftTemple] = middle.x - reach - kMargin;
  points[2 * kRightTemple] = middle.x + reach + kMargin;
  points[2 * kTop + 1] = 2 * middle.y - points[2 * kChin + 1];
}
