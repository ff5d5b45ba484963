#include "training/candidate_features.h"

namespace {

// One kind: the whole is `cellsX` by `cellsY` cells, the inner parts are rectangles in units of cells.
struct Kind {
  int cellsX, cellsY;
  int parts;
  HaarRect part[2];
};

constexpr Kind kKinds[] = {
    {2, 1, 1, {{1, 0, 1, 1, 2.0f}, {}}},
    {1, 2, 1, {{0, 1, 1, 1, 2.0f}, {}}},
    {3, 1, 1, {{1, 0, 1, 1, 3.0f}, {}}},
    {1, 3, 1, {{0, 1, 1, 1, 3.0f}, {}}},
    {4, 1, 1, {{1, 0, 2, 1, 2.0f}, {}}},
    {1, 4, 1, {{0, 1, 1, 2, 2.0f}, {}}},
    {2, 2, 2, {{0, 0, 1, 1, 2.0f}, {1, 1, 1, 1, 2.0f}}},
};

CandidateFeature place(const Kind& kind, int x, int y, int cellWidth, int cellHeight) {
  CandidateFeature feature{1 + kind.parts, {}};
  feature.rects[0] = {x, y, kind.cellsX * cellWidth, kind.cellsY * cellHeight, -1.0f};
  for (int k = 0; k < kind.parts; ++k) {
    const HaarRect& part = kind.part[k];
    feature.rects[k + 1] = {x + part.x * cellWidth, y + part.y * cellHeight, part.width * cellWidth,
                            part.height * cellHeight, part.weight};
  }
  return feature;
}

void placeEverywhere(const Kind& kind, int cellWidth, int cellHeight, std::vector<CandidateFeature>& out) {
  for (int y = 0; y + kind.cellsY * cellHeight <= kWindowSide; ++y) {
    for (int x = 0; x + kind.cellsX * cellWidth <= kWindowSide; ++x) {
      out.push_back(place(kind, x, y, cellWidth, cellHeight));
    }
  }
}

}  // namespace

std::vector<CandidateFeature> allCandidateFeatures(int minArea) {
  std::vector<CandidateFeature> features;
  for (const Kind& kind : kKinds) {
    for (int cellHeight = 1; kind.cellsY * cellHeight <= kWindowSide; ++cellHeight) {
      for (int cellWidth = 1; kind.cellsX * cellWidth <= kWindowSide; ++cellWidth) {
        if (kind.cellsX * cellWidth * kind.cellsY * cellHeight < minArea) continue;
        placeEverywhere(kind, cellWidth, cellHeight, features);
      }
    }
  }
  return features;
}
