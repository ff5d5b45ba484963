#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "features/TNeuroLocator.h"
#include "features/mean_grid.h"
#include "tests/features/reference_search.h"

namespace {

class ShapeModelTest : public testing::Test {
 protected:
  void SetUp() override {
    fillFace(face_, 256, 256, 3);
    locator_.Scores.Begin(face_);
    locator_.ImageWidth = locator_.ImageHeight = 256;
  }

  static TGrid GridOf(const float* nodes) {
    TGrid grid;
    for (int k = 0; k < kNodes; ++k) grid.AddNode({nodes[2 * k], nodes[2 * k + 1]});
    return grid;
  }

  std::array<float, kShapeParameters> RandomParameters(float spread) {
    std::array<float, kShapeParameters> p{};
    std::uniform_real_distribution<float> unit(-1.0F, 1.0F);
    for (std::size_t m = 0; m < 32; ++m) p[m] = spread * eigenvalues[m] * unit(random_);
    p[32] = 15 * unit(random_);
    p[33] = 15 * unit(random_);
    p[34] = 1 + 0.4F * unit(random_);
    p[35] = 1 + 0.4F * unit(random_);
    p[36] = 0.4F * unit(random_);
    return p;
  }

  std::mt19937 random_{12};
  SearchModel model_ = makeSearchModel(21);
  TIppiImage face_;
  TNeuroLocator locator_{model_.Data()};
};

TEST_F(ShapeModelTest, ScoresOfAllCornersAreKeptApart) {
  ReferenceSearch plain(model_, face_);
  for (int node = 0; node < kNodes; node += 13) {
    for (const float x : {0.0F, 1.0F, 2.0F, 254.0F, 255.0F}) {
      for (const float y : {0.0F, 1.0F, 2.0F, 254.0F, 255.0F}) {
        EXPECT_EQ(locator_.NodeSimilarity(x, y, node), plain.Similarity(x, y, node)) << node << " " << x << " " << y;
      }
    }
  }
}

TEST_F(ShapeModelTest, GeneratesTheSameAsThePlainSum) {
  ReferenceSearch plain(model_, face_);
  for (int round = 0; round < 200; ++round) {
    const auto p = RandomParameters(round % 2 ? 1.0F : 3.0F);  // wide ones reach the clamps
    float nodes[kCoordinates];
    locator_.GenerateGridP(nodes, p.data(), p[32], p[33], p[34], p[35], p[36]);
    const ReferenceGrid expected = plain.Generate(p.data());
    for (std::size_t k = 0; k < kNodes; ++k) {
      ASSERT_EQ(nodes[2 * k], expected[k].x) << round;
      ASSERT_EQ(nodes[2 * k + 1], expected[k].y) << round;
    }
  }
}

TEST_F(ShapeModelTest, ScoresSideBySideAreThoseOfEachAlone) {
  for (const auto& [width, height] : {std::pair{256, 256}, {120, 200}}) {
    locator_.ImageWidth = width;
    locator_.ImageHeight = height;
    for (const bool even : {true, false}) {
      locator_.EvenCoordinates = even;
      for (int count = 1; count <= kShapeLanes; ++count) {
        std::array<float, kShapeParameters> parameters[kShapeLanes];
        const float* rows[kShapeLanes];
        for (int i = 0; i < count; ++i) {
          parameters[i] = RandomParameters(1.0F);
          if (i == 2) parameters[i][32] = 5000;  // wholly at the edge: no node counts
          rows[i] = parameters[i].data();
        }
        locator_.Scores.Begin(face_);
        float together[kShapeLanes];
        locator_.ShapeSimilarities(rows, count, together);
        const std::size_t evaluations = locator_.Scores.Evaluations();
        for (int i = 0; i < count; ++i) {
          const auto& p = parameters[i];
          locator_.GenerateGridP(locator_.Grid1L, p.data(), p[32], p[33], p[34], p[35], p[36]);
          EXPECT_EQ(together[i], locator_.GridSimilarityL(locator_.Grid1L)) << count << ", " << i;
          if (i == 2) {
            EXPECT_EQ(together[i], 0.0F);
          }
        }
        EXPECT_EQ(locator_.Scores.Evaluations(), evaluations) << "a score was missing or found twice";
      }
    }
  }
}

TEST_F(ShapeModelTest, MarginLeavesNodesOut) {
  float nodes[kCoordinates];
  for (int k = 0; k < kNodes; ++k) nodes[2 * k] = 3.0F, nodes[2 * k + 1] = 100.0F;
  EXPECT_EQ(locator_.GridSimilarityL(nodes), 0.0F);
  nodes[2 * 7] = 3.01F;
  EXPECT_EQ(locator_.GridSimilarityL(nodes), locator_.NodeSimilarity(3, 100, 7));
  nodes[2 * 9] = 252.99F;
  const float two = locator_.NodeSimilarity(3, 100, 7) + locator_.NodeSimilarity(252, 100, 9);
  EXPECT_EQ(locator_.GridSimilarityL(nodes), two / 2);
  nodes[2 * 9] = 253.0F;
  EXPECT_EQ(locator_.GridSimilarityL(nodes), locator_.NodeSimilarity(3, 100, 7));
}

TEST_F(ShapeModelTest, LinkTermOfWholeGrids) {
  const TGrid mean = MeanGrid40;
  const float plain = locator_.GridSimilarityL(locator_.MeanNodes);
  EXPECT_EQ(locator_.GridSimilarity(mean), plain);
  locator_.LinkWeight = 5;
  locator_.Grid2.Assign(mean);
  EXPECT_EQ(locator_.GridSimilarity(mean), plain) << "no stretch, no charge";
  // All links of the reference half as long: each stretches by its whole reference length, about.
  TGrid half = mean;
  half.Scale(0.5F);
  locator_.Grid2.Assign(half);
  EXPECT_NEAR(locator_.GridSimilarity(mean), plain - 5.0F, 0.05F);
  // Links without length are neither charged nor counted.
  TGrid point = mean;
  for (TSPoint& node : point.Nodes) node = {100, 100};
  locator_.Grid2.Assign(point);
  EXPECT_EQ(locator_.GridSimilarity(mean), plain);
  // One node of the reference away from all others: only its links count. Node 36 has three.
  point.Nodes[36] = {110, 100};
  locator_.Grid2.Assign(point);
  double sum = 0;
  for (const std::size_t j : {2U, 3U, 20U}) {
    const double dx = mean.Nodes[36].x - mean.Nodes[j].x, dy = mean.Nodes[36].y - mean.Nodes[j].y;
    sum += std::pow(std::sqrt(dx * dx + dy * dy) - 10, 2) / 100 / 3;
  }
  EXPECT_NEAR(locator_.GridSimilarity(mean), plain - 5 * sum, 1e-4 * sum);
}

TEST_F(ShapeModelTest, PlacesTheBaseGridInsideTheImage) {
  TGrid grid = locator_.BaseGrid;
  EXPECT_TRUE(locator_.PositionAndScale(&grid, 128, 147, 1, 1));
  EXPECT_EQ(grid.Nodes[0].x, 128.0F - 29);
  EXPECT_EQ(grid.Nodes[29].y, 147.0F + 86);
  // Node 9 is the farthest to the right, at 69, node 5 the highest, at -126.
  EXPECT_TRUE(locator_.PositionAndScale(&grid, 255 - 69, 126, 1, 1));
  EXPECT_FALSE(locator_.PositionAndScale(&grid, 256 - 69, 126, 1, 1));
  EXPECT_EQ(grid.Nodes[9].x, 255.0F);
  EXPECT_EQ(grid.Nodes[11].x, 256.0F - 69 + 68);
  EXPECT_FALSE(locator_.PositionAndScale(&grid, 128, 125, 1, 1));
  EXPECT_EQ(grid.Nodes[5].y, 0.0F);
  EXPECT_EQ(grid.Nodes[6].y, 125.0F - 102);
  EXPECT_FALSE(locator_.PositionAndScale(&grid, 128, 147, 2, 0.5F));
  EXPECT_EQ(grid.Nodes[4].x, 128.0F + 2 * 23);
  EXPECT_EQ(grid.Nodes[4].y, 147.0F + 43.0F / 2);
}

}  // namespace
