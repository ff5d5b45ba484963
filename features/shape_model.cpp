// What faces look like: grids made from few parameters, and how well a grid fits the image.
#include <algorithm>
#include <bit>
#include <cmath>

#include "features/TNeuroLocator.h"
#include "primitives/kernels.h"

namespace {

constexpr float kMargin = 3.0F;  // pixels along the image's edge in which nodes don't count

float squaredDistance(TSPoint a, TSPoint b) {
  const float dx = a.x - b.x, dy = a.y - b.y;
  return dx * dx + dy * dy;
}

// Sum of the squared relative stretches of the links, and their number.
struct Stretch {
  double sum = 0.0;
  int count = 0;

  void Add(TSPoint a, TSPoint b, TSPoint referenceA, TSPoint referenceB) {
    const long d = std::lrintf(squaredDistance(a, b)), r = std::lrintf(squaredDistance(referenceA, referenceB));
    if (r == 0) return;
    const double stretch = std::sqrt(static_cast<double>(d)) - std::sqrt(static_cast<double>(r));
    sum += stretch * stretch / static_cast<double>(r);
    ++count;
  }
};

}  // namespace

float TNeuroLocator::NodeSimilarity(float x, float y, int node) {
  const int parity = EvenCoordinates ? ~1 : ~0;
  return Scores.At(node, static_cast<int>(x) & parity, static_cast<int>(y) & parity);
}

bool TNeuroLocator::Counts(float x, float y) const {
  const float right = static_cast<float>(ImageWidth) - kMargin, bottom = static_cast<float>(ImageHeight) - kMargin;
  return x > kMargin && x < right && y > kMargin && y < bottom;
}

float TNeuroLocator::GridSimilarityL(const float* nodes) {
  float sum = 0.0F;
  int count = 0;
  for (int n = 0; n < kNodes; ++n) {
    const float x = nodes[2 * n], y = nodes[2 * n + 1];
    if (!Counts(x, y)) continue;
    sum += NodeSimilarity(x, y, n);
    ++count;
  }
  return count == 0 ? 0.0F : sum / static_cast<float>(count);
}

float TNeuroLocator::GridSimilarity(TGrid grid) {
  float nodes[kCoordinates];
  for (std::size_t n = 0; n < kNodes; ++n) {
    nodes[2 * n] = grid.Nodes[n].x;
    nodes[2 * n + 1] = grid.Nodes[n].y;
  }
  const float mean = GridSimilarityL(nodes);
  if (LinkWeight == 0.0F) return mean;
  Stretch stretch;
  for (int i = 0; i < kNodes; ++i) {
    for (int j = 0; j < kNodes; ++j) {
      const auto a = static_cast<std::size_t>(i), b = static_cast<std::size_t>(j);
      if (i != j && NodesLinked(i, j)) stretch.Add(grid.Nodes[a], grid.Nodes[b], Grid2.Nodes[a], Grid2.Nodes[b]);
    }
  }
  if (stretch.count == 0) return mean;
  return static_cast<float>(static_cast<double>(mean) - static_cast<double>(LinkWeight) / stretch.count * stretch.sum);
}

// The last row of parameters is the rotation.
void TNeuroLocator::BendShapes(const ShapeRow* parameters, ShapeRow* nodes) const {
  const ShapeModel model{MeanNodes, EigenGrids, kCoordinates, kDeformations, kSide - 1.0F};
  const ShapeRow& angles = parameters[kRotationParameter];
  ShapeRow cosines, sines;
  for (int lane = 0; lane < kShapeLanes; ++lane) {
    cosines[lane] = std::cos(angles[lane]);
    sines[lane] = std::sin(angles[lane]);
  }
  kernels().patch.bendShapes(model, parameters, cosines, sines, nodes);
}

void TNeuroLocator::GenerateGridP(float* nodes, const float* b, float tx, float ty, float sx, float sy, float angle) {
  ShapeRow parameters[kShapeParameters] = {}, shapes[kCoordinates];
  for (int m = 0; m < kDeformations; ++m) parameters[m][0] = b[m];
  const float pose[] = {tx, ty, sx, sy, angle};
  for (int p = 0; p < kPoseParameters; ++p) parameters[kDeformations + p][0] = pose[p];
  BendShapes(parameters, shapes);
  for (int k = 0; k < kCoordinates; ++k) nodes[k] = shapes[k][0];
}

void TNeuroLocator::ShapeSimilarities(const float* const* parameters, int count, float* similarities) {
  if (!EvenCoordinates) {
    for (int i = 0; i < count; ++i) {
      const float* p = parameters[i];
      GenerateGridP(Grid1L, p, p[32], p[33], p[34], p[35], p[36]);
      similarities[i] = GridSimilarityL(Grid1L);
    }
    return;
  }
  ShapeRow rows[kShapeParameters], nodes[kCoordinates], means;
  for (int lane = 0; lane < kShapeLanes; ++lane) {
    const float* from = parameters[lane < count ? lane : 0];
    for (int p = 0; p < kShapeParameters; ++p) rows[p][lane] = from[p];
  }
  BendShapes(rows, nodes);
  const ScoreTables tables{Scores.Even(), kNodes, kMargin, static_cast<float>(ImageWidth) - kMargin,
                           static_cast<float>(ImageHeight) - kMargin};
  unsigned char missing[kNodes];
  const auto meanScores = kernels().patch.meanScores;
  if (!meanScores(tables, nodes, means, missing)) {
    WantMissing(nodes, missing);
    meanScores(tables, nodes, means, missing);
  }
  std::copy_n(means, count, similarities);
}

void TNeuroLocator::WantMissing(const ShapeRow* nodes, const unsigned char* missing) {
  for (int n = 0; n < kNodes; ++n) {
    for (unsigned lanes = missing[n]; lanes != 0; lanes &= lanes - 1) {
      const int lane = std::countr_zero(lanes);
      const auto x = static_cast<int>(nodes[2 * n][lane]), y = static_cast<int>(nodes[2 * n + 1][lane]);
      Scores.Want(n, x & ~1, y & ~1);
    }
  }
  Scores.Evaluate();
}

TSPoint TNeuroLocator::PlacedNode(std::size_t node, float tx, float ty, float sx, float sy) const {
  const auto width = static_cast<float>(ImageWidth), height = static_cast<float>(ImageHeight);
  const float x = sx * BaseGrid.Nodes[node].x + tx, y = sy * BaseGrid.Nodes[node].y + ty;
  return {x < 0.0F ? 0.0F : x >= width ? width - 1.0F : x, y < 0.0F ? 0.0F : y >= height ? height - 1.0F : y};
}

bool TNeuroLocator::PositionAndScale(TGrid* grid, float tx, float ty, float sx, float sy) {
  bool inside = true;
  for (std::size_t k = 0; k < BaseGrid.Nodes.size(); ++k) {
    const TSPoint node = PlacedNode(k, tx, ty, sx, sy);
    grid->Nodes[k] = node;
    inside = inside && node.x == sx * BaseGrid.Nodes[k].x + tx && node.y == sy * BaseGrid.Nodes[k].y + ty;
  }
  return inside;
}

void TNeuroLocator::CopyGridFromGrid1() { Result->Assign(Grid1); }

void TNeuroLocator::CopyGridFromGrid1L() {
  const std::size_t count = std::min<std::size_t>(Result->Nodes.size(), kNodes);
  for (std::size_t k = 0; k < count; ++k) Result->Nodes[k] = {Grid1L[2 * k], Grid1L[2 * k + 1]};
}
