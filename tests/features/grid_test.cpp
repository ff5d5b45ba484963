#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <random>
#include <utility>
#include <vector>

#include "features/TGrid.h"
#include "features/mean_grid.h"
#include "models/models.h"

bool operator==(const TSPoint& a, const TSPoint& b) { return a.x == b.x && a.y == b.y; }

namespace {

using TCentre = std::pair<int, int>;

TGrid gridOf(const std::vector<TSPoint>& nodes) {
  TGrid grid;
  for (const TSPoint& node : nodes) grid.AddNode(node);
  return grid;
}

TCentre centreOf(const TGrid& grid) {
  int x = -1, y = -1;
  grid.FindCenter(&x, &y);
  return {x, y};
}

TEST(Grid, TheTwoMeanGridsAreTablesOfTheirOwn) {
  TGrid centred;
  ASSERT_EQ(centred.LoadFromString(base_grid_text), 1);
  ASSERT_EQ(MeanGrid40.NodeCount(), 40);
  ASSERT_EQ(centred.NodeCount(), 40);
  EXPECT_EQ(centreOf(MeanGrid40), TCentre(128, 127));
  EXPECT_EQ(centreOf(centred), TCentre(1, -20));
  EXPECT_EQ(MeanGrid40.Nodes[0], (TSPoint{97, 129}));
  EXPECT_EQ(MeanGrid40.Nodes[39], (TSPoint{141, 202}));
  EXPECT_EQ(centred.Nodes[0], (TSPoint{-29, -18}));
  EXPECT_EQ(centred.Nodes[39], (TSPoint{13, 54}));
}

TEST(Grid, TheCentreIsThatOfTheBoxOfTruncatedNodes) {
  EXPECT_EQ(centreOf(TGrid()), TCentre(0, 0));
  EXPECT_EQ(centreOf(gridOf({{1.9f, -1.9f}})), TCentre(1, -1));
  EXPECT_EQ(centreOf(gridOf({{0, 0}, {5, -5}})), TCentre(2, -3)) << "half of 5 onto -5";
  EXPECT_EQ(centreOf(gridOf({{0, 0}, {1, 1}, {100, 10}})), TCentre(50, 5)) << "not the mean";
  EXPECT_EQ(centreOf(gridOf({{12100, 12100}, {12200, 12300}})), TCentre(11100, 11150)) << "the box starts at 10000";
  EXPECT_EQ(centreOf(gridOf({{-12100, 0}, {-12200, 0}})), TCentre(-11100, 0)) << "and at -10000";
}

TEST(Grid, MovesScalesAndTurns) {
  TGrid grid = gridOf({{1, 2}, {-3, 4}});
  grid.Shift(0.5f, -2);
  EXPECT_EQ(grid.Nodes[0], (TSPoint{1.5f, 0}));
  grid.Scale(2);
  EXPECT_EQ(grid.Nodes[1], (TSPoint{-5, 4}));
  grid.Scale(3, 0.5f, 1, 2);
  EXPECT_EQ(grid.Nodes[0], (TSPoint{7, 1}));
  EXPECT_EQ(grid.Nodes[1], (TSPoint{-17, 3}));

  TGrid turned = gridOf({{11, 20}});
  turned.RotateNB(10, 20, std::numbers::pi_v<float> / 2);
  EXPECT_NEAR(turned.Nodes[0].x, 10, 1e-6) << "x turns towards y";
  EXPECT_NEAR(turned.Nodes[0].y, 21, 1e-6);
}

// The offsets from the centre are floats: 2^24 + 1 comes to 2^24.
TEST(Grid, TheCentreOfATurnBecomesAFloatFirst) {
  TGrid grid = gridOf({{16777216, 0}});
  grid.RotateNB(16777217, 0, 1.0f);
  EXPECT_EQ(grid.Nodes[0], (TSPoint{16777216, 0}));
}

TEST(Grid, RotateMovesEveryNodeIntoTheImage) {
  const std::vector<TSPoint> nodes = {{-5, 3}, {4, 99}, {2.5f, 2.5f}};
  TGrid grid = gridOf(nodes);
  grid.Rotate(0, 0, 10, 20, 0);
  EXPECT_EQ(grid.Nodes, (std::vector<TSPoint>{{0, 3}, {4, 19}, {2.5f, 2.5f}})) << "also without a turn";
  grid = gridOf(nodes);
  grid.RotateNB(0, 0, 0);
  EXPECT_EQ(grid.Nodes, nodes);
  grid.Rotate(0, 0, 1, 20, 0);
  for (const TSPoint& node : grid.Nodes) EXPECT_EQ(node.x, 0);
  grid.Rotate(0, 0, 0.3f);
  for (const TSPoint& node : grid.Nodes) EXPECT_EQ(node, (TSPoint{0, 0})) << "in an empty image";

  TGrid byCentre = gridOf({{10, 10}, {20, 30}}), byPoint = byCentre;
  byCentre.Rotate(100, 100, 0.7f);
  byPoint.Rotate(15, 20, 100, 100, 0.7f);
  EXPECT_EQ(byCentre.Nodes, byPoint.Nodes);
}

}  // namespace
