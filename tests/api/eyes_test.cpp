// The eyes of a face behind the exported functions.
#include <algorithm>

#include "library_fixture.h"

namespace {

constexpr TPoint kMark = {-77, -77};

struct TEyePoints {
  TPoint points[40];
  TEyePoints() { std::fill(std::begin(points), std::end(points), kMark); }
  bool marked(std::size_t i) const { return points[i].x == kMark.x && points[i].y == kMark.y; }
  // How many of the entries from `first` on are as they were.
  long markedFrom(std::size_t first) const {
    long count = 0;
    for (std::size_t i = first; i < 40; ++i) count += marked(i);
    return count;
  }
};

class Eyes : public LibraryTest {};

TEST_F(Eyes, OnlyTheFirstTwoPointsAreWrittenAndTheInputsStay) {
  const TPicture picture = RandomPicture(200, 160, 3);
  const HImage image = ImageOf(picture);
  const TFacePosition given = {90, 80, 100, 4711, 3.5};
  TFacePosition face = given;
  TEyePoints found, again;
  ASSERT_EQ(VIZL_DetectEyesInRegion(image, &face, &found.points), VIZLE_OK);
  EXPECT_FALSE(found.marked(0));
  EXPECT_FALSE(found.marked(1));
  EXPECT_EQ(found.markedFrom(2), 38);
  EXPECT_TRUE(PictureOf(image, 3) == picture);
  EXPECT_TRUE(face.xc == given.xc && face.yc == given.yc && face.w == given.w && face.Reserved == 4711);

  ASSERT_EQ(VIZL_DetectEyesInRegion_C(image, &face, &again.points, 12345), VIZLE_OK) << "the context has no effect";
  for (std::size_t i = 0; i < 2; ++i) {
    EXPECT_EQ(again.points[i].x, found.points[i].x);
    EXPECT_EQ(again.points[i].y, found.points[i].y);
  }
  EXPECT_EQ(VIZL_DetectEyesInRegion(EmptyImage(), &given, &again.points), VIZLE_INVALID_ARGUMENT);
}

}  // namespace
