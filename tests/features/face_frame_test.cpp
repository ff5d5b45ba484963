#include "features/face_frame.h"

#include <gtest/gtest.h>

#include <ostream>
#include <random>
#include <vector>

#include "features/TGrid.h"
#include "features/mean_grid.h"

namespace {

struct Frame {
  int x1 = 0, y1 = 0, x2 = 0, y2 = 0;
  bool operator==(const Frame&) const = default;
};
std::ostream& operator<<(std::ostream& out, const Frame& f) {
  return out << "(" << f.x1 << ", " << f.y1 << ")-(" << f.x2 << ", " << f.y2 << ")";
}

TGrid gridOf(const std::vector<TSPoint>& nodes) {
  TGrid grid;
  for (const TSPoint& node : nodes) grid.AddNode(node);
  return grid;
}

Frame unbounded(const TGrid& grid, int width, int height) {
  Frame f;
  EXPECT_EQ(CalculateFaceFramePositionNB(grid, &f.x1, &f.y1, &f.x2, &f.y2, width, height), 0);
  return f;
}

Frame bounded(const TGrid& grid, int width, int height) {
  Frame f;
  EXPECT_EQ(CalculateFaceFramePosition(grid, &f.x1, &f.y1, &f.x2, &f.y2, width, height), 0);
  return f;
}

TEST(FaceFrame, WithoutBoundsIsAsWorkedOutByHand) {
  EXPECT_EQ(unbounded(gridOf({{100, 100}}), 500, 500), (Frame{100, 100, 100, 100}));
  // 150 by 240 about (150, 200), then 240 wide.
  EXPECT_EQ(unbounded(gridOf({{100, 100}, {200, 300}}), 5000, 5000), (Frame{30, 80, 270, 320}));
  // 300 by 120 about (200, 150), then 300 high.
  EXPECT_EQ(unbounded(gridOf({{100, 100}, {300, 200}}), 5000, 5000), (Frame{50, 0, 350, 300}));
  EXPECT_EQ(unbounded(MeanGrid40, 256, 256), (Frame{1, 0, 255, 254}));
  // 9 by 12 about (103, 105): from 98.5, 99 to 107.5, 111 gives 98, 99 to 107, 111, which lacks 3 columns.
  const TGrid odd = gridOf({{100, 100}, {106, 110}});
  EXPECT_EQ(unbounded(odd, 500, 500), (Frame{97, 99, 109, 111}));
  EXPECT_EQ(unbounded(odd, 110, 500), (Frame{97, 99, 109, 111})) << "the last column takes it";
  EXPECT_EQ(unbounded(odd, 109, 500), (Frame{96, 99, 108, 111})) << "at the edge the left does";
}

TEST(FaceFrame, TheBoxStartsAt10000AndEndsAtLeastAt0) {
  int width, height;
  CalcGridSize(TGrid(), &width, &height);
  EXPECT_EQ(width, -10000);
  EXPECT_EQ(height, -10000);
  CalcGridSize(gridOf({{12000, -50}, {12100, -20}}), &width, &height);
  EXPECT_EQ(width, 2100) << "nodes beyond 10000 don't move the near side";
  EXPECT_EQ(height, 50) << "nor nodes above 0 the far one";
  CalcGridSize(gridOf({{10.9f, 10.9f}, {30.9f, 30.1f}}), &width, &height);
  EXPECT_EQ(width, 20);
  EXPECT_EQ(height, 20);
}

TEST(FaceFrame, InsideTheImageIsAsWorkedOutByHand) {
  EXPECT_EQ(bounded(gridOf({{100, 100}, {200, 300}}), 5000, 5000), (Frame{30, 80, 270, 320}));
  // From the box (0, 10)-(40, 50): 60 by 48 about (20, 30) is cut to (0, 6)-(50, 54), which lacks 2 rows.
  EXPECT_EQ(bounded(gridOf({{-20, 10}, {40, 50}}), 200, 200), (Frame{0, 5, 50, 55}));
  // Of (60, 60)-(120, 100) 60 to 100 is left: 60 by 48 about (80, 80) is cut to 99: (50, 56)-(99, 99), 6 rows short.
  EXPECT_EQ(bounded(gridOf({{60, 60}, {120, 100}}), 100, 100), (Frame{50, 50, 99, 99}));
  // The square is wider than the image: 40 by 192 about (20, 100), grown to 192, moved to the left end, moved back
  // to end at 39 and then half of what hangs out to the right again.
  EXPECT_EQ(bounded(gridOf({{10, 20}, {30, 180}}), 40, 200), (Frame{-77, 4, 115, 196}));
}

TEST(FaceFrame, IsSquareAndInsideWhereItFits) {
  std::mt19937 random(11);
  const auto pick = [&](int low, int high) { return std::uniform_int_distribution<int>(low, high)(random); };
  for (int i = 0; i < 100000; ++i) {
    const int width = pick(1, 300), height = pick(1, 300);
    const TGrid grid = gridOf({{static_cast<float>(pick(0, 2 * width)), static_cast<float>(pick(-50, height))},
                               {static_cast<float>(pick(-50, width)), static_cast<float>(pick(0, 2 * height))},
                               {static_cast<float>(pick(0, width)), static_cast<float>(pick(0, height))}});
    const Frame free = unbounded(grid, width, height);
    ASSERT_EQ(free.x2 - free.x1, free.y2 - free.y1) << free;
    const Frame held = bounded(grid, width, height);
    ASSERT_EQ(held.x2 - held.x1, held.y2 - held.y1) << held << " in " << width << " x " << height;
    const bool fits = held.x2 - held.x1 < width && held.y2 - held.y1 < height;
    const bool inside = held.x1 >= 0 && held.x2 < width && held.y1 >= 0 && held.y2 < height;
    ASSERT_TRUE(inside || !fits) << held << " in " << width << " x " << height;
  }
}

}  // namespace
