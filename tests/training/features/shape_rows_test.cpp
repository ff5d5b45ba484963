#include "training/features/shape_rows.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

#include "training/features/forehead_labels.h"

namespace {

// Faces of thirty ways to differ from the mean one, as labels would give them, and their places and sizes.
std::vector<Shape> drawShapes(std::size_t count) {
  std::mt19937 random(5);
  std::normal_distribution<double> normal;
  std::vector<Shape> ways(30);
  for (Shape& way : ways) {
    for (double& value : way) value = normal(random);
  }
  std::vector<Shape> shapes;
  for (std::size_t i = 0; i < count; ++i) {
    Shape shape = meanShape();
    for (std::size_t w = 0; w < ways.size(); ++w) {
      const double share = 3 * normal(random) / static_cast<double>(w + 1);
      for (std::size_t k = 0; k < kCoordinates; ++k) shape[k] += share * ways[w][k];
    }
    const double scale = 1 + 0.1 * normal(random), x = 4 * normal(random);
    for (std::size_t k = 0; k < kCoordinates; ++k) shape[k] = scale * shape[k] + (k % 2 == 0 ? x : 3);
    shapes.push_back(shape);
  }
  return shapes;
}

std::vector<ShapeRowSpread> rowsOfDrawnShapes() {
  std::vector<Shape> aligned;
  for (const Shape& shape : drawShapes(400)) {
    aligned.push_back(alignedToMean(shape));
    tieForehead(aligned.back());
  }
  return chooseShapeRows(aligned);
}

TEST(ShapeRows, AreOrthonormal) {
  const auto rows = rowsOfDrawnShapes();
  ASSERT_EQ(rows.size(), kDeformations);
  for (std::size_t a = 0; a < rows.size(); ++a) {
    for (std::size_t b = 0; b <= a; ++b) {
      double product = 0;
      for (std::size_t k = 0; k < kCoordinates; ++k) product += rows[a].row[k] * rows[b].row[k];
      EXPECT_NEAR(product, a == b ? 1 : 0, 1e-9) << a << ' ' << b;
    }
  }
}

struct Middle {
  double x, y;
};

// Of the box that the temples, the top of the forehead and the chin span.
Middle boxOf(const Shape& shape) { return {(shape[16] + shape[18]) / 2, (shape[11] + shape[59]) / 2}; }

// What the temples follow: eyes, brows and nose.
double followed(const Shape& shape) {
  const double eyes = (shape[0] + shape[2]) / 2, brows = (shape[68] + shape[70]) / 2;
  return 0.5 * eyes + 0.5 * brows + 0.17 * (shape[4] - eyes);
}

// But for the way there from the box of the mean face, 1.3 pixels right and 1.6 down: one row goes it together with the
// way to the mean of the faces, and what is orthogonal to both may go a part of it.
TEST(ShapeRows, KeepTheBoxBesideWhereThePictureWasTurnedAbout) {
  const Shape mean = meanShape();
  const auto rows = rowsOfDrawnShapes();
  for (std::size_t m = 0; m < rows.size(); ++m) {
    Shape bent = mean;
    for (std::size_t k = 0; k < kCoordinates; ++k) bent[k] += 20 * rows[m].row[k];
    const double right = boxOf(bent).x - boxOf(mean).x - 0.6 * (followed(bent) - followed(mean));
    const double down = boxOf(bent).y - boxOf(mean).y;
    EXPECT_NEAR(right / 1.3, down / 1.6, 1e-6) << "row " << m;
  }
}

TEST(ForeheadLabels, SpanABoxThatGoesAlongWithAFaceOnlySideways) {
  const auto boxAt = [](float dx, float dy) {
    std::array<float, 80> points;
    const Shape mean = meanShape();
    for (std::size_t k = 0; k < kCoordinates; ++k) points[k] = static_cast<float>(mean[k]) + (k % 2 == 0 ? dx : dy);
    placeForehead(points);
    Shape shape;
    std::copy(points.begin(), points.end(), shape.begin());
    // No other node stands farther out.
    for (std::size_t k = 0; k < kCoordinates; k += 2) {
      EXPECT_GE(shape[k], shape[16]);
      EXPECT_LE(shape[k], shape[18]);
      EXPECT_GE(shape[k + 1], shape[11]);
      EXPECT_LE(shape[k + 1], shape[59]);
    }
    return boxOf(shape);
  };
  EXPECT_NEAR(boxAt(0, 0).x, 129.3, 1e-4);
  EXPECT_NEAR(boxAt(0, 0).y, 129.1, 1e-4);
  EXPECT_NEAR(boxAt(10, 0).x, 135.3, 1e-4);
  EXPECT_NEAR(boxAt(0, -8).y, 129.1, 1e-4);
}

}  // namespace
