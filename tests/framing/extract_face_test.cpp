#include "framing/extract_face.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <iterator>

#include "api/vizl_api.h"
#include "tests/framing/ramp.h"

namespace {

// All forty in two places: the box has its corners there.
void spread(TPoint (&points)[40], TPoint first, TPoint second) {
  for (std::size_t n = 0; n < 40; ++n) points[n] = n % 2 ? second : first;
}

// Points from (100, 60) to (140, 160): the frame is 120 by 120 about (120, 110), so (60, 50)-(180, 170).
TEST(ExtractFace, ShowsTheFrameAndMovesThePoints) {
  TIppiImage image(imRGB24), face;
  makeRamp(image, 256, 240);
  TPoint points[40], moved[40];
  spread(points, {100, 60}, {140, 160});
  ASSERT_TRUE(ExtractFace(image, points, 60, 60, face, moved));
  EXPECT_EQ(moved[0].x, 20);
  EXPECT_EQ(moved[0].y, 5);
  EXPECT_EQ(moved[39].x, 40);
  EXPECT_EQ(moved[39].y, 55);
  EXPECT_EQ(face.Width, 60) << "121 columns at half size";
  EXPECT_EQ(face.Height, 60);
  EXPECT_EQ(face.Mode, imRGB24);
  EXPECT_NEAR(pixelAt(face, 20, 5)[0], 100, 1);
  EXPECT_NEAR(pixelAt(face, 20, 5)[1], 61, 2);
  EXPECT_NEAR(pixelAt(face, 59, 59)[0], 179, 2);

  ASSERT_TRUE(ExtractFace(image, points, 120, 1, face, points)) << "into the same array, at full size";
  EXPECT_EQ(points[0].x, 40);
  EXPECT_EQ(points[39].y, 110);
  EXPECT_EQ(face.Width, face.Height) << "the height doesn't count";
  EXPECT_NEAR(face.Width, 121, 1);
}

TEST(ExtractFace, IsBlackBeyondTheImage) {
  TIppiImage image(imRGB24), face;
  makeRamp(image, 150, 100);
  TPoint points[40];
  spread(points, {100, 60}, {140, 160});
  ASSERT_TRUE(ExtractFace(image, points, 120, 120, face, points));
  EXPECT_EQ(pixelAt(face, 40, 20)[2], 50);
  EXPECT_EQ(pixelAt(face, 100, 20)[2], 0) << "column 160";
  EXPECT_EQ(pixelAt(face, 40, 60)[2], 0) << "row 110";
}

TEST(ExtractFace, AnOddColumnGoesToTheSideThatTheOutputTells) {
  TIppiImage image(imRGB24), face;
  makeRamp(image, 256, 240);
  TPoint points[40], right[40], left[40];
  // 9 by 12 about (103, 105) lacks 3 columns: the odd one goes to the right while the output is wider than 110.
  spread(points, {100, 100}, {106, 110});
  ASSERT_TRUE(ExtractFace(image, points, 120, 120, face, right));
  ASSERT_TRUE(ExtractFace(image, points, 60, 120, face, left));
  EXPECT_EQ(right[0].x, 30) << "3 columns into a frame from 97";
  EXPECT_EQ(left[0].x, 20) << "4 into one from 96";
}

TEST(ExtractFace, WhatCantBeCutIsRefusedAndNothingChanges) {
  TIppiImage image(imRGB24), face(imGray8);
  makeRamp(image, 50, 40);
  face.AllocNew(3, 2);
  const struct {
    TPoint first, second;
    int width;
  } bad[] = {{{20, 20}, {20, 20}, 100},        {{20, 20}, {30, 30}, 0},   {{20, 20}, {30, 30}, -5},
             {{20, 20}, {30, 30}, INT_MIN},    {{0, 0}, {60000, 5}, 100}, {{INT_MIN, INT_MIN}, {INT_MAX, INT_MAX}, 100},
             {{INT_MAX, 0}, {INT_MAX, 5}, 100}};
  for (const auto& b : bad) {
    TPoint points[40], moved[40] = {};
    spread(points, b.first, b.second);
    EXPECT_FALSE(ExtractFace(image, points, b.width, 10, face, moved)) << b.first.x << ", " << b.width;
    EXPECT_EQ(face.Width, 3);
    EXPECT_EQ(moved[1].x, 0);
  }
  TPoint points[40], moved[40] = {};
  spread(points, {20, 20}, {30, 30});
  EXPECT_ANY_THROW(ExtractFace(image, points, 100000, 10, face, moved));
  EXPECT_ANY_THROW(ExtractFace(image, points, INT_MAX, 10, face, moved));
  EXPECT_TRUE(std::all_of(std::begin(moved), std::end(moved), [](TPoint p) { return p.x == 0 && p.y == 0; }));
}

}  // namespace
