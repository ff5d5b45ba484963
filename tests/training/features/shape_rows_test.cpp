#include "training/features/shape_rows.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace {

double product(const Shape& a, const Shape& b) {
  double sum = 0;
  for (std::size_t k = 0; k < kCoordinates; ++k) sum += a[k] * b[k];
  return sum;
}

Shape turnedAndMoved(const Shape& shape, double angle, double scale, double x, double y) {
  Shape moved;
  const double c = scale * std::cos(angle), s = scale * std::sin(angle);
  for (std::size_t k = 0; k < kCoordinates; k += 2) {
    moved[k] = c * shape[k] - s * shape[k + 1] + x;
    moved[k + 1] = s * shape[k] + c * shape[k + 1] + y;
  }
  return moved;
}

std::vector<Shape> randomShapes(std::size_t count) {
  std::mt19937 random(7);
  std::normal_distribution<double> normal;
  std::vector<Shape> shapes;
  for (std::size_t i = 0; i < count; ++i) {
    Shape shape = meanShape();
    // Nodes that move together, and a little by themselves.
    const double common = 6 * normal(random);
    for (std::size_t k = 0; k < kCoordinates; ++k) {
      shape[k] += (k % 3 == 0 ? common : 0) + normal(random) * (1 + static_cast<double>(k) / 40);
    }
    shapes.push_back(alignedToMean(shape));
  }
  return shapes;
}

TEST(AlignedToMean, TakesPoseAway) {
  const Shape mean = meanShape();
  for (const Shape& shape : {mean, turnedAndMoved(mean, 0.3, 1.7, -50, 20)}) {
    const Shape aligned = alignedToMean(shape);
    for (std::size_t k = 0; k < kCoordinates; ++k) EXPECT_NEAR(aligned[k], mean[k], 1e-9) << k;
  }
}

// The two sides of the mean face differ a little, so that a stretch looks like a very small turn.
TEST(AlignedToMean, TakesStretchAway) {
  const Shape mean = meanShape();
  Shape stretched = mean;
  for (std::size_t k = 0; k < kCoordinates; k += 2) stretched[k] *= 1.2;
  const Shape aligned = alignedToMean(stretched);
  for (std::size_t k = 0; k < kCoordinates; ++k) EXPECT_NEAR(aligned[k], mean[k], 0.1) << k;
}

TEST(AlignedToMean, DoesNotDependOnTurnSizeAndPlace) {
  for (const Shape& shape : randomShapes(5)) {
    const Shape aligned = alignedToMean(turnedAndMoved(shape, -0.25, 0.6, 31, -7));
    const Shape expected = alignedToMean(shape);
    for (std::size_t k = 0; k < kCoordinates; ++k) EXPECT_NEAR(aligned[k], expected[k], 1e-9) << k;
  }
}

TEST(ShapeRows, AreOrthonormalAndTellTheirSpread) {
  const auto shapes = randomShapes(300);
  const auto rows = chooseShapeRows(shapes);
  ASSERT_EQ(rows.size(), 32u);
  for (std::size_t i = 0; i < rows.size(); ++i) {
    for (std::size_t j = 0; j <= i; ++j) EXPECT_NEAR(product(rows[i].row, rows[j].row), i == j ? 1 : 0, 1e-9);
    double square = 0;
    for (const Shape& shape : shapes) {
      square += std::pow(product(rows[i].row, shape) - product(rows[i].row, meanShape()), 2) / 300;
    }
    EXPECT_NEAR(rows[i].spread, std::sqrt(square), 1e-6) << i;
  }
  EXPECT_EQ(eigenGridsOf(rows).size(), 2560u);
  EXPECT_EQ(eigenGridsOf(rows)[81], static_cast<float>(rows[1].row[1]));
}

// The widest range does what a pose parameter does; the forehead's rows leave the sides of the box nearly alone, and
// nothing that the shapes do is lost.
TEST(ShapeRows, SpendWideRangesWhereTheyDoNoHarm) {
  const auto shapes = randomShapes(300);
  const auto rows = chooseShapeRows(shapes);
  for (std::size_t k = 0; k < kCoordinates; ++k) EXPECT_NEAR(rows[0].row[k], k % 2 ? std::sqrt(1.0 / 40) : 0, 1e-12);
  for (std::size_t i = 6; i < 13; ++i) {
    double free = 0;
    for (const std::size_t k : {10, 12, 13, 14, 15, 17, 19}) free += rows[i].row[k] * rows[i].row[k];
    EXPECT_GT(free, 0.5) << i;
  }
  double all = 0, reached = 0;
  for (const Shape& shape : shapes) {
    Shape rest = shape;
    for (std::size_t k = 0; k < kCoordinates; ++k) rest[k] -= meanShape()[k];
    all += product(rest, rest);
    for (const auto& row : rows) reached += std::pow(product(row.row, rest), 2);
  }
  EXPECT_GT(reached, 0.6 * all);  // of shapes that have a part in every direction
}

// About MeanGrid40 and not about the shapes' own mean, which would otherwise be out of reach.
TEST(ShapeRows, ReachTheMeanOfTheShapes) {
  const Shape mean = meanShape();
  Shape offset{};
  for (std::size_t k = 0; k < kCoordinates; ++k) offset[k] = k % 7 == 1 ? 2.0 : -0.3;
  std::vector<Shape> shapes;
  for (const Shape& shape : randomShapes(200)) {
    Shape moved;
    for (std::size_t k = 0; k < kCoordinates; ++k) moved[k] = mean[k] + 0.05 * (shape[k] - mean[k]) + offset[k];
    shapes.push_back(moved);
  }
  const auto rows = chooseShapeRows(shapes);
  double reached = 0;
  for (std::size_t i = 0; i < 3; ++i) reached += std::pow(product(rows[i].row, offset), 2);
  EXPECT_NEAR(reached / product(offset, offset), 1, 1e-2);
}

TEST(SymmetricEigen, TakesAMatrixApart) {
  std::mt19937 random(11);
  std::normal_distribution<double> normal;
  constexpr std::size_t kSize = 23;
  std::vector<double> matrix(kSize * kSize);
  for (std::size_t i = 0; i < kSize; ++i) {
    for (std::size_t j = 0; j <= i; ++j) matrix[i * kSize + j] = matrix[j * kSize + i] = normal(random);
  }
  const EigenPairs pairs = symmetricEigen(matrix, kSize);
  for (std::size_t k = 0; k < kSize; ++k) {
    if (k > 0) {
      EXPECT_LE(pairs.values[k], pairs.values[k - 1]);
    }
    for (std::size_t i = 0; i < kSize; ++i) {
      double sum = 0;
      for (std::size_t j = 0; j < kSize; ++j) sum += matrix[i * kSize + j] * pairs.vectors[k][j];
      EXPECT_NEAR(sum, pairs.values[k] * pairs.vectors[k][i], 1e-9);
    }
  }
}

}  // namespace
