#include "training/features/forehead_labels.h"

#include <algorithm>
#include <cmath>

#include "features/mean_grid.h"

namespace {

constexpr std::size_t kNose = 2, kTop = 5, kLeftTemple = 8, kRightTemple = 9, kChin = 29;
constexpr std::size_t kUpperForehead[] = {6, 7};
// The other nodes at the sides of the face.
constexpr std::size_t kSides[] = {10, 11, 12, 13, 30, 31, 32, 33};
// The temples stand out, so that they and no other node span the box; pixels of the frame.
constexpr double kMargin = 8;
// How much farther than in the mean face, where the sides of most faces would span the box.
constexpr double kApart = 9;

struct Middle {
  double x, y;
};

template <typename Points>
double meanX(const Points& points, std::size_t a, std::size_t b) {
  return (static_cast<double>(points[2 * a]) + static_cast<double>(points[2 * b])) / 2;
}

// Follows the eyes and the brows, and less the nose, of a head that turns.
template <typename Points>
double followed(const Points& points) {
  const double eyes = meanX(points, 0, 1), brows = meanX(points, 34, 35);
  return (eyes + brows) / 2 + 0.17 * (static_cast<double>(points[2 * kNose]) - eyes);
}

std::array<double, 80> meanPoints() {
  std::array<double, 80> points;
  for (std::size_t n = 0; n < 40; ++n) {
    points[2 * n] = static_cast<double>(MeanGrid40.Nodes[n].x);
    points[2 * n + 1] = static_cast<double>(MeanGrid40.Nodes[n].y);
  }
  return points;
}

// Where the picture was turned about: near the middle of the frame, whatever the face. Up and down it stays within a
// pixel (s.d.). Sideways it goes along with two thirds of a face's offset, since both move with the angle of the face;
// a least squares fit over detected faces of the training set, as they are and turned by 15 degrees to either side,
// leaves 2.2 pixels. Both are counted from where the mean face has its box, as the shape model is.
template <typename Points>
Middle turnedAbout(const Points& points) {
  constexpr double kShare = 0.7;
  const auto mean = meanPoints();
  return {meanX(mean, kLeftTemple, kRightTemple) + kShare * (followed(points) - followed(mean)),
          (mean[2 * kTop + 1] + mean[2 * kChin + 1]) / 2};
}

// Each temple `apart` from the middle.
template <typename Points>
void place(Points& points, const Middle& middle, double apart) {
  using Number = typename Points::value_type;
  points[2 * kLeftTemple] = static_cast<Number>(middle.x - apart);
  points[2 * kRightTemple] = static_cast<Number>(middle.x + apart);
  points[2 * kTop + 1] = static_cast<Number>(2 * middle.y - static_cast<double>(points[2 * kChin + 1]));
}

}  // namespace

void placeForehead(std::array<float, 80>& points) {
  const Middle middle = turnedAbout(points);
  double reach = 0;
  for (const std::size_t n : kSides) reach = std::max(reach, std::abs(static_cast<double>(points[2 * n]) - middle.x));
  place(points, middle, reach + kMargin);
}

void tieForehead(std::array<double, 80>& shape) {
  const auto mean = meanPoints();
  const auto reset = [&](std::size_t k) { shape[k] = mean[k]; };
  reset(2 * kTop);
  for (const std::size_t n : kUpperForehead) {
    reset(2 * n);
    reset(2 * n + 1);
  }
  reset(2 * kLeftTemple + 1);
  reset(2 * kRightTemple + 1);
  place(shape, turnedAbout(shape), (mean[2 * kRightTemple] - mean[2 * kLeftTemple]) / 2 + kApart);
}
