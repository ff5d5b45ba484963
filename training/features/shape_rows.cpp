#include "training/features/shape_rows.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "features/mean_grid.h"

namespace {

Shape meanShape() {
  Shape shape;
  for (std::size_t n = 0; n < kNodes; ++n) {
    shape[2 * n] = static_cast<double>(MeanGrid40.Nodes[n].x);
    shape[2 * n + 1] = static_cast<double>(MeanGrid40.Nodes[n].y);
  }
  return shape;
}

// The shape with its centroid moved from or to the origin.
Shape moved(Shape shape, double x, double y) {
  for (std::size_t n = 0; n < kNodes; ++n) {
    shape[2 * n] += x;
    shape[2 * n + 1] += y;
  }
  return shape;
}

double centre(const Shape& shape, std::size_t axis) {
  double sum = 0;
  for (std::size_t n = 0; n < kNodes; ++n) sum += shape[2 * n + axis];
  return sum / kNodes;
}

// Least squares turn onto `to`, both about the origin.
Shape turnedOnto(const Shape& shape, const Shape& to) {
  double along = 0, across = 0;
  for (std::size_t k = 0; k < kCoordinates; k += 2) {
    along += shape[k] * to[k] + shape[k + 1] * to[k + 1];
    across += shape[k] * to[k + 1] - shape[k + 1] * to[k];
  }
  const double length = std::hypot(along, across), c = along / length, s = across / length;
  Shape turned;
  for (std::size_t k = 0; k < kCoordinates; k += 2) {
    turned[k] = c * shape[k] - s * shape[k + 1];
    turned[k + 1] = s * shape[k] + c * shape[k + 1];
  }
  return turned;
}

void scaleOnto(Shape& shape, const Shape& to, std::size_t axis) {
  double product = 0, square = 0;
  for (std::size_t k = axis; k < kCoordinates; k += 2) {
    product += shape[k] * to[k];
    square += shape[k] * shape[k];
  }
  for (std::size_t k = axis; k < kCoordinates; k += 2) shape[k] *= product / square;
}

double along(const Shape& row, const Shape& aligned, const Shape& mean) {
  double sum = 0;
  for (std::size_t k = 0; k < kCoordinates; ++k) sum += row[k] * (aligned[k] - mean[k]);
  return sum;
}

std::vector<double> secondMoment(const std::vector<Shape>& aligned) {
  const Shape mean = meanShape();
  std::vector<double> moment(kCoordinates * kCoordinates);
  for (const Shape& shape : aligned) {
    for (std::size_t i = 0; i < kCoordinates; ++i) {
      const double scaled = (shape[i] - mean[i]) / static_cast<double>(aligned.size());
      for (std::size_t j = 0; j < kCoordinates; ++j) moment[i * kCoordinates + j] += scaled * (shape[j] - mean[j]);
    }
  }
  return moment;
}

}  // namespace

Shape alignedToMean(const Shape& shape) {
  const Shape mean = meanShape();
  const double x = centre(mean, 0), y = centre(mean, 1);
  const Shape to = moved(mean, -x, -y);
  Shape turned = turnedOnto(moved(shape, -centre(shape, 0), -centre(shape, 1)), to);
  scaleOnto(turned, to, 0);
  scaleOnto(turned, to, 1);
  return moved(turned, x, y);
}

std::vector<ShapeRowSpread> chooseShapeRows(const std::vector<Shape>& aligned) {
  const EigenPairs pairs = symmetricEigen(secondMoment(aligned), kCoordinates);
  std::vector<ShapeRowSpread> rows(kDeformations);
  for (std::size_t k = 0; k < kDeformations; ++k) {
    std::copy_n(pairs.vectors[k].begin(), kCoordinates, rows[k].row.begin());
    rows[k].spread = std::sqrt(std::max(0.0, pairs.values[k]));
  }
  return rows;
}

void printShapeRows(const std::vector<ShapeRowSpread>& rows, const std::vector<Shape>& aligned) {
  const Shape mean = meanShape();
  std::printf("row: spread and range of the search, pixels; their ratio; faces within the range\n");
  for (std::size_t k = 0; k < rows.size(); ++k) {
    const double range = static_cast<double>(eigenvalues[k]);
    const auto within = std::count_if(aligned.begin(), aligned.end(), [&](const Shape& shape) {
      return std::abs(along(rows[k].row, shape, mean)) <= range;
    });
    std::printf("%3zu  %7.2f  %7.2f  %6.2f  %6.2f %%\n", k, rows[k].spread, range, range / rows[k].spread,
                100.0 * static_cast<double>(within) / static_cast<double>(aligned.size()));
  }
}

std::vector<float> eigenGridsOf(const std::vector<ShapeRowSpread>& rows) {
  std::vector<float> grids;
  for (const ShapeRowSpread& row : rows) grids.insert(grids.end(), row.row.begin(), row.row.end());
  return grids;
}
