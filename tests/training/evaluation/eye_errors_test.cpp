#include "training/evaluation/eye_errors.h"

#include <gtest/gtest.h>

namespace {

using evaluation::EyeError;
using evaluation::Eyes;
using evaluation::EyeTally;

TEST(EyeErrors, AreInUnitsOfTheEyeDistanceAndTheWorseEyeCounts) {
  const Eyes truth = {{{100, 50}, {130, 90}}};  // 50 apart
  const EyeError error = evaluation::eyeErrorOf(truth, {{{103, 46}, {130, 91}}});
  EXPECT_DOUBLE_EQ(error.offset[0].x, 0.06);
  EXPECT_DOUBLE_EQ(error.offset[0].y, -0.08);
  EXPECT_DOUBLE_EQ(error.offset[1].y, 0.02);
  EXPECT_DOUBLE_EQ(error.worse, 0.1);

  EyeTally tally;
  tally.add(error);
  tally.add(evaluation::eyeErrorOf(truth, truth));
  EXPECT_DOUBLE_EQ(tally.within(0.05), 0.5);
  EXPECT_DOUBLE_EQ(tally.within(0.1001), 1);
  EXPECT_DOUBLE_EQ(tally.meanDistance(), (0.1 + 0.02) / 4);
  EXPECT_DOUBLE_EQ(tally.meanOffset(0).x, 0.03);
}

TEST(EyeErrors, AQuarterTurnClockwiseTakesRightToDown) {
  const Eyes turned = evaluation::turnedEyes({{{20, 10}, {10, 14}}}, {10, 10}, 90);
  EXPECT_NEAR(turned[0].x, 10, 1e-9);
  EXPECT_NEAR(turned[0].y, 20, 1e-9);
  EXPECT_NEAR(turned[1].x, 6, 1e-9);
  EXPECT_NEAR(turned[1].y, 10, 1e-9);
}

}  // namespace
