#include <gtest/gtest.h>

#include "detect/TMultiFaceDetector.h"
#include "tests/detect/scene.h"

namespace {

using reference::Cluster;

class Clustering : public testing::Test {
 protected:
  Cluster cluster(std::vector<TRectangle> rects, int threshold1, int threshold2) {
    const TestContext context({true, true, 384, {threshold1, threshold2}});
    return clusterIn(rects, context);
  }
  Cluster clusterIn(std::vector<TRectangle>& rects, int context) {
    Cluster c = {-9, -9, -9, -9, -9};
    detector_->ClusterFace(rects, c.x1, c.y1, c.x2, c.y2, c.count, context);
    return c;
  }

  std::unique_ptr<TIppiFaceDetector> detector_ = makeDetector(squareCascade());
  TMultiFaceDetector multi_{detector_.get()};
};

TRectangle square(int x, int y, int side) { return {x, y, x + side, y + side}; }

TEST_F(Clustering, WidthsAreAlikeUpToThirtyPixels) {
  EXPECT_EQ(cluster({square(0, 0, 100), square(0, 0, 130)}, 2, 1).count, 2);
  EXPECT_EQ(cluster({square(0, 0, 100), square(0, 0, 131)}, 2, 1).count, 0);
}

TEST_F(Clustering, OfNothingOrTooLittleIsZero) {
  EXPECT_EQ(cluster({}, 1, 1), Cluster{});
  EXPECT_EQ(cluster({square(5, 5, 20)}, 1, 2), Cluster{});
  EXPECT_EQ(cluster({square(5, 5, 20)}, 1, 1), (Cluster{5, 5, 25, 25, 1}));
  // A third of a mean width of 2 is 0: not even itself is near.
  EXPECT_EQ(cluster(std::vector<TRectangle>(9, square(5, 5, 2)), 1, 1), Cluster{});
}

TEST_F(Clustering, UnknownContextAsksForFiveNeighbours) {
  std::vector<TRectangle> four(4, square(0, 0, 30)), five(5, square(0, 0, 30));
  EXPECT_EQ(clusterIn(four, 987654).count, 0);
  EXPECT_EQ(clusterIn(five, 987654).count, 5);
}

TEST_F(Clustering, MatchesPairwiseReferenceOnRandomLists) {
  std::mt19937 random(21);
  for (int round = 0; round < 120; round++) {
    const int spread = 5 + static_cast<int>(random() % 200);
    std::vector<TRectangle> rects(random() % 300);
    for (TRectangle& r : rects) {
      const auto offset = [&](int range) { return static_cast<int>(random() % static_cast<unsigned>(range)); };
      r = square(offset(spread) - spread / 2, offset(spread) - spread / 2, 1 + offset(90));
      r.x2 += offset(4);
      r.y2 += offset(4);
    }
    const reference::Thresholds thresholds = {1 + static_cast<int>(random() % 9), 1 + static_cast<int>(random() % 9)};
    const TestContext context({true, true, 384, thresholds});
    EXPECT_EQ(clusterIn(rects, context), reference::clusterFace(rects, thresholds)) << "round " << round;

    std::vector<TRectangle> kept = {square(1, 2, 3)};
    multi_.DetectFace(rects, kept, context);
    ASSERT_EQ(kept[0], square(1, 2, 3));
    kept.erase(kept.begin());
    EXPECT_TRUE(kept == reference::supported(rects, thresholds)) << "round " << round;

    int* groups = nullptr;
    int last = -2;
    float distance = -1;
    float wantedDistance = -1;
    multi_.GroupFace(rects, groups, last, distance);
    const std::unique_ptr<int[]> owned(groups);
    const std::vector<int> wanted = reference::groupFace(rects, wantedDistance);
    EXPECT_EQ(std::vector<int>(groups, groups + rects.size()), wanted) << "round " << round;
    EXPECT_EQ(distance, wantedDistance);
    EXPECT_EQ(last, wanted.empty() ? -1 : *std::max_element(wanted.begin(), wanted.end()));
  }
}

// Widths of 30 group up to 20 pixels around the seed, and the seed is the first of the list.
TEST_F(Clustering, GroupsGatherAroundTheirSeed) {
  const auto groupsOf = [this](std::vector<TRectangle> rects) {
    int* groups = nullptr;
    int last = -1;
    float distance = 0;
    multi_.GroupFace(rects, groups, last, distance);
    const std::unique_ptr<int[]> owned(groups);
    return std::vector<int>(groups, groups + rects.size());
  };
  EXPECT_EQ(groupsOf({square(0, 0, 30), square(15, 0, 30), square(30, 0, 30)}), (std::vector<int>{0, 0, 1}));
  EXPECT_EQ(groupsOf({square(15, 0, 30), square(0, 0, 30), square(30, 0, 30)}), (std::vector<int>{0, 0, 0}));
  EXPECT_EQ(groupsOf({square(0, 0, 30), square(20, 0, 30), square(0, 19, 30)}), (std::vector<int>{0, 1, 0}));
}

}  // namespace
