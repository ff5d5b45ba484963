// What faces look like: grids made from few parameters, and how well a grid fits the image.
#include <algorithm>
#include <cmath>

#include "features/TNeuroLocator.h"

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
  int column = static_cast<int>(x), row = static_cast<int>(y);
  if (EvenCoordinates) {
    column &= ~1;
    row &= ~1;
  }
  float& cached = SimilarityCache[static_cast<std::size_t>((column * kSide + row) * kNodes + node)];
  if (cached == 0.0F) {
    const int left = column - PatchWidth / 2, top = row - PatchHeight / 2;
    cached = 1.0F - Networks[node].PropagateImageI(Image, left, top, left + PatchWidth - 1, top + PatchHeight - 1);
  }
  return cached;
}

float TNeuroLocator::GridSimilarityL(float* nodes) {
  const float right = static_cast<float>(ImageWidth) - kMargin, bottom = static_cast<float>(ImageHeight) - kMargin;
  float sum = 0.0F;
  int count = 0;
  for (int n = 0; n < kNodes; ++n) {
    const float x = nodes[2 * n], y = nodes[2 * n + 1];
    if (!(x > kMargin && x < right && y > kMargin && y < bottom)) continue;
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

void TNeuroLocator::GenerateGridP(float* nodes, float* b, float tx, float ty, float sx, float sy, float angle) {
  float sumX = 0.0F, sumY = 0.0F;
  for (int k = 0; k < kCoordinates; k += 2) {
    float x = MeanNodes[k], y = MeanNodes[k + 1];
    for (int m = 0; m < kDeformations; ++m) {
      x += b[m] * EigenGrids[m * kCoordinates + k];
      y += b[m] * EigenGrids[m * kCoordinates + k + 1];
    }
    nodes[k] = x + tx;
    nodes[k + 1] = y + ty;
    sumX += nodes[k];
    sumY += nodes[k + 1];
  }
  // The nodes are moved already, so the pivot is the unmoved centroid plus twice the shift.
  const float pivotX = tx + sumX / kNodes, pivotY = ty + sumY / kNodes;
  const float c = std::cos(angle), s = std::sin(angle);
  for (int k = 0; k < kCoordinates; k += 2) {
    const float dx = (nodes[k] - pivotX) * sx, dy = (nodes[k + 1] - pivotY) * sy;
    nodes[k] = std::clamp(c * dx - s * dy + pivotX, 0.0F, kSide - 1.0F);
    nodes[k + 1] = std::clamp(s * dx + c * dy + pivotY, 0.0F, kSide - 1.0F);
  }
}

bool TNeuroLocator::PositionAndScale(TGrid* grid, float tx, float ty, float sx, float sy) {
  const auto width = static_cast<float>(ImageWidth), height = static_cast<float>(ImageHeight);
  bool inside = true;
  for (std::size_t k = 0; k < BaseGrid.Nodes.size(); ++k) {
    const float x = sx * BaseGrid.Nodes[k].x + tx, y = sy * BaseGrid.Nodes[k].y + ty;
    TSPoint& node = grid->Nodes[k];
    node.x = x < 0.0F ? 0.0F : x >= width ? width - 1.0F : x;
    node.y = y < 0.0F ? 0.0F : y >= height ? height - 1.0F : y;
    inside = inside && node.x == x && node.y == y;
  }
  return inside;
}

void TNeuroLocator::CopyGridFromGrid1() { Result->Assign(Grid1); }

void TNeuroLocator::CopyGridFromGrid1L() {
  const std::size_t count = std::min<std::size_t>(Result->Nodes.size(), kNodes);
  for (std::size_t k = 0; k < count; ++k) Result->Nodes[k] = {Grid1L[2 * k], Grid1L[2 * k + 1]};
}
