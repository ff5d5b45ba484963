#include "training/evaluation/grouping.h"

#include <gtest/gtest.h>

#include "detect/TIppiFaceDetector.h"

namespace evaluation {
namespace {

TRectangle squareAt(int x, int y, int side) { return {x, y, x + side, y + side}; }

TEST(RelativeGroups, KeepFacesOfDifferentSizesApart) {
  const std::vector<TRectangle> hits = {squareAt(0, 0, 20),     squareAt(2, 1, 20),      squareAt(1, 2, 23),
                                        squareAt(40, 0, 20),    squareAt(200, 200, 200), squareAt(220, 190, 210),
                                        squareAt(190, 210, 190)};
  const auto groups = relativeGroups(hits);
  ASSERT_EQ(groups.size(), 3u);
  EXPECT_EQ(groups[0].hits, 3);
  EXPECT_NEAR(groups[0].face.cx, (10 + 12 + 12.5) / 3, 1e-9);
  EXPECT_NEAR(groups[0].face.w, 21, 1e-9);
  EXPECT_EQ(groups[1].hits, 3);
  EXPECT_NEAR(groups[1].face.w, 200, 1e-9);
  EXPECT_EQ(groups[2].hits, 1);
  EXPECT_NEAR(groups[2].face.cx, 50, 1e-9);
}

TEST(RelativeGroups, DropTheWeakerOfTwoOnOneFace) {
  // A hit of half the size in the middle of a face.
  const auto groups = relativeGroups({squareAt(25, 25, 50), squareAt(0, 0, 100), squareAt(2, 2, 100)});
  ASSERT_EQ(groups.size(), 1u);
  EXPECT_EQ(groups[0].hits, 2);
}

TEST(LibraryGroups, TakeTheThresholdThatIsAskedFor) {
  TIppiFaceDetector detector;
  std::vector<TRectangle> hits;
  for (int i = 0; i < 4; ++i) hits.push_back(squareAt(100 + i, 50, 60));
  hits.push_back(squareAt(300, 200, 60));
  ASSERT_EQ(libraryGroups(detector, hits, 1).size(), 2u);
  const auto faces = libraryGroups(detector, hits, 4);
  ASSERT_EQ(faces.size(), 1u);
  EXPECT_EQ(faces[0].w, 60);
  // The mean of 100 to 103 is cut to 101.
  EXPECT_EQ(faces[0].cx, 131);
  EXPECT_EQ(faces[0].cy, 80);
  EXPECT_TRUE(libraryGroups(detector, hits, 5).empty());
}

TEST(RelativeGroups, OfNothingAreNone) { EXPECT_TRUE(relativeGroups({}).empty()); }

}  // namespace
}  // namespace evaluation
