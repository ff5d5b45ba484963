#include "training/features/forehead_labels.h"

#include <algorithm>
#include <cmath>

#include "training/features/shape_rows.h"

namespace {

constexpr std::size_t kNose = 2, kTop = 5, kLeftTemple = 8, kRightTemple = 9, kChin = 29;
// The other nodes at the sides of the face.
constexpr std::size_t kSides[] = {10, 11, 12, 13, 30, 31, 32, 33};
// The temples stand out, so that they and no other node span the box; pixels of the frame.
constexpr double kMargin = 8;
// How far right of and below the place turned about the middle of the box belongs, pixels of the frame. The way back
// truncates that middle to whole pixels, and what the labels make up for, the truncation of the points above all, lies
// along the axes of the picture, while labels move along those of the frame. Faces turned by 12 and 20 degrees to
// either side came back right, on average, with a box so much farther on.
constexpr double kBoxRight = 1.3, kBoxDown = 1.6;
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

// Where the box belongs: beside the place about which the picture was turned. That is near the middle of the frame,
// whatever the face. Up and down it stays within a pixel (s.d.). Sideways it goes along with most of a face's offset,
// since both move with the angle of the face: over detected faces of the training set, turned by 12 and 20 degrees to
// either side, the share used here leaves 2.2 pixels, as a least squares fit does. Both are counted from where the mean
// face has its box, as the rows are.
template <typename Points>
Middle boxMiddle(const Points& points) {
  const Shape mean = meanShape();
  return {meanX(mean, kLeftTemple, kRightTemple) + kBoxRight + kTempleShare * (followed(points) - followed(mean)),
          (mean[2 * kTop + 1] + mean[2 * kChin + 1]) / 2 + kBoxDown};
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
  const Middle middle = boxMiddle(points);
  double reach = 0;
  for (const std::size_t n : kSides) reach = std::max(reach, std::abs(static_cast<double>(points[2 * n]) - middle.x));
  place(points, middle, reach + kMargin);
}

void tieForehead(std::array<double, 80>& shape) {
  const Shape mean = meanShape();
  for (const std::size_t k : kFreeForehead) shape[k] = mean[k];
  place(shape, boxMiddle(shape), (mean[2 * kRightTemple] - mean[2 * kLeftTemple]) / 2 + kApart);
}
