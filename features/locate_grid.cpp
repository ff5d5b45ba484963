// The stages of the search.
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <stdexcept>

#include "api/vizl_api.h"
#include "features/TGenetic.h"
#include "features/TNeuroLocator.h"

namespace {

constexpr unsigned kSeed = 0x72FE7DCF;
constexpr int kPopulation = 800;
constexpr float kRefinementLinkWeight = 5.0F;
// A squared length below which a link has no direction to stretch in.
constexpr float kLeastSquaredLength = 1e-10F;

}  // namespace

float TNeuroLocator::LocateGrid(TIppiImage& face) {
  BeginSearch(face);
  Place best;
  CoarseSlide(best);
  FineSlide(best);
  PositionAndScale(&Grid1, static_cast<float>(best.x), static_cast<float>(best.y), 1.0F, 1.0F);
  CopyGridFromGrid1();
  GeneticStage();
  EvenCoordinates = false;
  Grid1.Assign(*Result);
  Grid2.Assign(*Result);
  for (const int step : {0, 1}) {
    if (NeedInterrupt) break;
    RefinePass(step);
  }
  LinkWeight = kRefinementLinkWeight;
  const float similarity = GridSimilarity(*Result);
  return similarity;
}

void TNeuroLocator::BeginSearch(TIppiImage& face) {
  if (Result == nullptr || face.Pixels == nullptr || face.Mode != imGray8 || face.Width > kSide ||
      face.Height > kSide) {
    throw std::invalid_argument("nothing to search, or no place for the result");
  }
  Scores.Begin(face);
  ImageWidth = face.Width;
  ImageHeight = face.Height;
  std::fill_n(NodeConfidence, kNodes, 0.0F);
  Result->Assign(BaseGrid);
  Grid1.Assign(BaseGrid);
  Grid2.Assign(BaseGrid);
  LinkWeight = 0.0F;
  EvenCoordinates = false;
}

void TNeuroLocator::TryPlace(int x, int y, Place& best) {
  PositionAndScale(&Grid1, static_cast<float>(x), static_cast<float>(y), 1.0F, 1.0F);
  const float score = GridSimilarity(Grid1);
  if (!(score > best.score)) return;
  CopyGridFromGrid1();
  best = {x, y, score};
}

// Asks for the scores of all places of a column together.
void TNeuroLocator::WantColumn(int x, int firstY, int lastY, int step) {
  for (int n = 0; n < kNodes; ++n) {
    for (int y = firstY; y <= lastY; y += step) {
      const auto node = static_cast<std::size_t>(n);
      const TSPoint at = PlacedNode(node, static_cast<float>(x), static_cast<float>(y), 1.0F, 1.0F);
      if (Counts(at.x, at.y)) Scores.Want(n, static_cast<int>(at.x), static_cast<int>(at.y));
    }
  }
  Scores.Evaluate();
}

// A quarter of the image's width round half of it, in steps of 4.
void TNeuroLocator::CoarseSlide(Place& best) {
  constexpr int kStep = 4;
  const int midX = ImageWidth >> 3, reachX = ImageWidth >> 5, midY = ImageHeight >> 3, reachY = ImageHeight >> 5;
  for (int i = midX - reachX; i <= midX + reachX; ++i) {
    if (NeedInterrupt) continue;
    const int x = kStep * i, first = kStep * (midY - reachY), last = kStep * (midY + reachY);
    WantColumn(x, first, last, kStep);
    for (int y = first; y <= last && !NeedInterrupt; y += kStep) TryPlace(x, y, best);
  }
}

// The bounds stay, the place that is skipped moves with the best one.
void TNeuroLocator::FineSlide(Place& best) {
  constexpr int kReach = 4;
  const Place from = best;
  for (int x = from.x - kReach; x <= from.x + kReach; ++x) {
    if (NeedInterrupt) continue;
    WantColumn(x, from.y - kReach, from.y + kReach, 1);
    for (int y = from.y - kReach; y <= from.y + kReach && !NeedInterrupt; ++y) {
      if (x != best.x || y != best.y) TryPlace(x, y, best);
    }
  }
}

void TNeuroLocator::GeneticStage() {
  std::srand(kSeed);
  LinkWeight = 0.0F;
  EvenCoordinates = true;
  Grid2.Assign(*Result);
  TGenetic search(kPopulation, this);
  search.Solve(0.00001F);
}

void TNeuroLocator::RefinePass(int step) {
  LinkWeight = kRefinementLinkWeight;
  for (int node = 0; node < kNodes; ++node) RefineNode(node, step);
}

// Moves a node of Grid1 to the best of nine places, `step` pixels apart. A node without a place in the image stays.
void TNeuroLocator::RefineNode(int node, int step) {
  const auto width = static_cast<float>(ImageWidth), height = static_cast<float>(ImageHeight);
  TSPoint& place = Grid1.Nodes[static_cast<std::size_t>(node)];
  TSPoint kept = place;
  float best = -1e10F;
  for (int dx = -1; dx <= 1; ++dx) {
    for (int dy = -1; dy <= 1; ++dy) {
      const TSPoint c{place.x + static_cast<float>(step * dx), place.y + static_cast<float>(step * dy)};
      if (!(c.x >= 0.0F && c.x < width && c.y >= 0.0F && c.y < height)) continue;
      float score = NodeSimilarity(c.x, c.y, node);
      if (LinkWeight != 0.0F) score -= LinkCharge(node, c);
      if (!(score > best)) continue;
      best = score;
      kept = c;
    }
  }
  NodeConfidence[node] = best;
  place = kept;
  CopyGridFromGrid1();
}

// The weighted mean of the squared relative stretches of the node's links, were it at `c`.
float TNeuroLocator::LinkCharge(int node, TSPoint c) const {
  const TSPoint reference = Grid2.Nodes[static_cast<std::size_t>(node)];
  float sum = 0.0F;
  int count = 0;
  for (int j = 0; j < kNodes; ++j) {
    if (j == node || !NodesLinked(node, j)) continue;
    const TSPoint to = Grid1.Nodes[static_cast<std::size_t>(j)], other = Grid2.Nodes[static_cast<std::size_t>(j)];
    const float dx = c.x - to.x, dy = c.y - to.y;
    const float rx = reference.x - other.x, ry = reference.y - other.y;
    const float squared = rx * rx + ry * ry;
    ++count;
    if (!(squared > kLeastSquaredLength)) continue;
    const double stretch = std::sqrt(static_cast<double>(dx * dx + dy * dy)) - std::sqrt(static_cast<double>(squared));
    sum = static_cast<float>(static_cast<double>(sum) + stretch * stretch / static_cast<double>(squared));
  }
  return count == 0 ? 0.0F : sum * LinkWeight / static_cast<float>(count);
}
