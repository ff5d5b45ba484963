#include "training/features/shape_rows.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <iterator>
#include <numeric>

#include "features/mean_grid.h"
#include "training/features/forehead_labels.h"

namespace {

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

double product(const Shape& a, const Shape& b) { return std::inner_product(a.begin(), a.end(), b.begin(), 0.0); }

// Takes the parts along orthonormal rows out; twice, since the first time leaves rounding behind.
void clearOf(Shape& shape, const std::vector<Shape>& rows) {
  for (int pass = 0; pass < 2; ++pass) {
    for (const Shape& row : rows) {
      const double part = product(shape, row);
      for (std::size_t k = 0; k < kCoordinates; ++k) shape[k] -= part * row[k];
    }
  }
}

// The second moment about the mean face of what the rows leave.
std::vector<double> secondMoment(const std::vector<Shape>& aligned, const std::vector<Shape>& rows) {
  const Shape mean = meanShape();
  std::vector<double> moment(kCoordinates * kCoordinates);
  for (Shape rest : aligned) {
    for (std::size_t k = 0; k < kCoordinates; ++k) rest[k] -= mean[k];
    clearOf(rest, rows);
    for (std::size_t i = 0; i < kCoordinates; ++i) {
      const double scaled = rest[i] / static_cast<double>(aligned.size());
      for (std::size_t j = 0; j < kCoordinates; ++j) moment[i * kCoordinates + j] += scaled * rest[j];
    }
  }
  return moment;
}

std::vector<Shape> components(const std::vector<Shape>& aligned, const std::vector<Shape>& rows, std::size_t count) {
  const EigenPairs pairs = symmetricEigen(secondMoment(aligned, rows), kCoordinates);
  std::vector<Shape> found(count);
  for (std::size_t k = 0; k < count; ++k) std::copy_n(pairs.vectors[k].begin(), kCoordinates, found[k].begin());
  return found;
}

Shape unitRow(Shape row) {
  const double length = std::sqrt(product(row, row));
  for (double& value : row) value /= length;
  return row;
}

// What the rows leave of one more is added to them, at unit length.
void addRow(std::vector<Shape>& rows, Shape row) {
  clearOf(row, rows);
  rows.push_back(unitRow(row));
}

void addCoordinate(std::vector<Shape>& rows, std::size_t coordinate) {
  Shape row{};
  row[coordinate] = 1;
  addRow(rows, row);
}

constexpr std::size_t kTopY = 11, kLeftTempleX = 16, kRightTempleX = 18;

bool isFreeForehead(std::size_t coordinate) {
  return std::find(std::begin(kFreeForehead), std::end(kFreeForehead), coordinate) != std::end(kFreeForehead);
}

// The face along one axis, with the forehead as tieForehead has it, so that the box around the nodes stays near the
// place about which the picture was turned: the shift of the pose, which takes the box along, then needn't.
Shape moveAlong(std::size_t axis) {
  Shape row{};
  for (std::size_t k = axis; k < kCoordinates; k += 2) row[k] = isFreeForehead(k) ? 0 : 1;
  if (axis == 0) row[kLeftTempleX] = row[kRightTempleX] = kTempleShare;
  if (axis == 1) row[kTopY] = -1;
  return unitRow(row);
}

// From the mean face of the library to that of the shapes.
Shape meanOffset(const std::vector<Shape>& aligned) {
  const Shape mean = meanShape();
  Shape row{};
  for (const Shape& shape : aligned) {
    for (std::size_t k = 0; k < kCoordinates; ++k) row[k] += (shape[k] - mean[k]) / static_cast<double>(aligned.size());
  }
  return row;
}

// What tieForehead makes of a change of the mean face.
Shape tiedChange(Shape changed) {
  Shape mean = meanShape();
  tieForehead(mean);
  tieForehead(changed);
  for (std::size_t k = 0; k < kCoordinates; ++k) changed[k] -= mean[k];
  return changed;
}

// Turned by a radian or stretched twofold along one axis, about the centroid of the mean face.
enum class PoseRow { Turn, StretchX, StretchY };

Shape poseRow(PoseRow kind) {
  const Shape mean = meanShape();
  const double x = centre(mean, 0), y = centre(mean, 1);
  Shape changed = mean;
  for (std::size_t n = 0; n < kNodes; ++n) {
    const double dx = mean[2 * n] - x, dy = mean[2 * n + 1] - y;
    if (kind == PoseRow::Turn) changed[2 * n] -= dy;
    if (kind == PoseRow::Turn) changed[2 * n + 1] += dx;
    if (kind == PoseRow::StretchX) changed[2 * n] += dx;
    if (kind == PoseRow::StretchY) changed[2 * n + 1] += dy;
  }
  return tiedChange(changed);
}

// The box between them keeps its middle, but for what addRow takes off: the row to the mean of the faces brings the
// temples apart and the box over together, and to be orthogonal to that this one takes the box back a little.
Shape templesApart() {
  Shape row{};
  row[kLeftTempleX] = -1;
  row[kRightTempleX] = 1;
  return row;
}

// One coordinate, and the temples as they follow it.
Shape tiedCoordinate(std::size_t coordinate) {
  Shape changed = meanShape();
  changed[coordinate] += 1;
  return tiedChange(changed);
}

// Root of the mean square of the aligned shapes along the row, about the mean face.
double spreadOf(const Shape& row, const std::vector<Shape>& aligned) {
  const Shape mean = meanShape();
  double sum = 0;
  for (const Shape& shape : aligned) sum += std::pow(along(row, shape, mean), 2);
  return std::sqrt(sum / static_cast<double>(aligned.size()));
}

constexpr std::size_t kComponents = 14;
constexpr std::size_t kEarlyComponents = 6;
// Faces hardly differ along the last rows, so what these do is the search's chance. It does the least harm at points
// that their networks find well: pupils and corners of the mouth, sideways.
constexpr std::size_t kSingles[] = {0, 2, 6, 8};
static_assert(2 + std::size(kFreeForehead) + 1 + kComponents + 3 + 1 + std::size(kSingles) == kDeformations);

}  // namespace

Shape meanShape() {
  Shape shape;
  for (std::size_t n = 0; n < kNodes; ++n) {
    shape[2 * n] = static_cast<double>(MeanGrid40.Nodes[n].x);
    shape[2 * n + 1] = static_cast<double>(MeanGrid40.Nodes[n].y);
  }
  return shape;
}

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
  std::vector<Shape> rows = {moveAlong(0), moveAlong(1)};
  constexpr std::size_t kSideways = 0, kUpAndDown = 1;
  const std::size_t firstFree = rows.size();
  for (const std::size_t coordinate : kFreeForehead) addCoordinate(rows, coordinate);
  const std::size_t toMean = rows.size();
  addRow(rows, meanOffset(aligned));
  const std::size_t firstComponent = rows.size();
  const std::vector<Shape> found = components(aligned, rows, kComponents);
  rows.insert(rows.end(), found.begin(), found.end());
  const std::size_t firstPose = rows.size();
  for (const PoseRow kind : {PoseRow::Turn, PoseRow::StretchX, PoseRow::StretchY}) addRow(rows, poseRow(kind));
  addRow(rows, templesApart());
  for (const std::size_t coordinate : kSingles) addRow(rows, tiedCoordinate(coordinate));
  std::vector<ShapeRowSpread> chosen;
  const auto take = [&](std::size_t first, std::size_t end) {
    for (std::size_t k = first; k < end; ++k) chosen.push_back({rows[k], spreadOf(rows[k], aligned)});
  };
  take(firstComponent, firstComponent + 1);
  take(kSideways, kSideways + 1);
  take(toMean, toMean + 1);
  take(kUpAndDown, kUpAndDown + 1);
  take(firstComponent + 1, firstComponent + kEarlyComponents);
  take(firstFree, toMean);
  take(firstComponent + kEarlyComponents, firstPose);
  take(firstPose, kDeformations);
  return chosen;
}

std::vector<double> spreadsAlong(const std::vector<float>& eigenGrids, const std::vector<Shape>& aligned) {
  std::vector<double> spreads;
  for (std::size_t m = 0; m < kDeformations; ++m) {
    Shape row;
    std::copy_n(&eigenGrids[m * kCoordinates], kCoordinates, row.begin());
    spreads.push_back(spreadOf(row, aligned));
  }
  return spreads;
}

void printShapeRows(const std::vector<ShapeRowSpread>& rows, const std::vector<Shape>& aligned) {
  const Shape mean = meanShape();
  std::printf("row: spread and range of the search, pixels; the spread in the range; faces within the range\n");
  for (std::size_t k = 0; k < rows.size(); ++k) {
    const double range = static_cast<double>(eigenvalues[k]);
    const auto within = std::count_if(aligned.begin(), aligned.end(), [&](const Shape& shape) {
      return std::abs(along(rows[k].row, shape, mean)) <= range;
    });
    std::printf("%3zu  %7.2f  %7.2f  %6.2f %%  %6.2f %%\n", k, rows[k].spread, range, 100.0 * rows[k].spread / range,
                100.0 * static_cast<double>(within) / static_cast<double>(aligned.size()));
  }
}

std::vector<float> eigenGridsOf(const std::vector<ShapeRowSpread>& rows) {
  std::vector<float> grids;
  for (const ShapeRowSpread& row : rows) grids.insert(grids.end(), row.row.begin(), row.row.end());
  return grids;
}
