#include "training/evaluation/matching.h"

#include <gtest/gtest.h>

namespace evaluation {
namespace {

constexpr FaceSquare kTruth{200, 100, 80, 0};

struct MatchCase {
  const char* name;
  Detection detection;
  bool matches;
};

class Matching : public testing::TestWithParam<MatchCase> {};

TEST_P(Matching, HoldsToTheCriterionAtItsEdges) {
  EXPECT_EQ(matches(kTruth, GetParam().detection, Criterion{}), GetParam().matches);
}

INSTANTIATE_TEST_SUITE_P(
    Edges, Matching,
    testing::Values(MatchCase{"Same", {200, 100, 80, 0}, true}, MatchCase{"QuarterAway", {220, 100, 80, 0}, true},
                    MatchCase{"JustFurther", {220.1, 100, 80, 0}, false},
                    MatchCase{"DiagonalIsADistance", {215, 115, 80, 0}, false},
                    MatchCase{"Smallest", {200, 100, 56, 0}, true}, MatchCase{"TooSmall", {200, 100, 55.9, 0}, false},
                    MatchCase{"Largest", {200, 100, 112, 0}, true}, MatchCase{"TooLarge", {200, 100, 112.1, 0}, false},
                    MatchCase{"AngleDoesNotCount", {200, 100, 80, 90}, true}),
    [](const auto& each) { return each.param.name; });

TEST(FaceSquareOfEyes, StandsWhereTheGeometrySays) {
  FaceLabel label{};
  // Eyes 39.4 apart give a side of 100; upright, the square starts 0.293 left of the left eye and 0.413 above it.
  label.nodes[0] = {100 + 29.3, 50 + 41.3};
  label.nodes[1] = {100 + 68.7, 50 + 41.3};
  const FaceSquare upright = faceSquare(label);
  EXPECT_NEAR(upright.xc, 150, 1e-9);
  EXPECT_NEAR(upright.yc, 100, 1e-9);
  EXPECT_NEAR(upright.w, 100, 1e-9);
  EXPECT_NEAR(upright.roll, 0, 1e-9);
  // The head lies on its right ear as the viewer sees it: the chin points left and the right eye down.
  label.nodes[0] = {100 - 41.3, 29.3};
  label.nodes[1] = {100 - 41.3, 68.7};
  const FaceSquare lying = faceSquare(label);
  EXPECT_NEAR(lying.xc, 50, 1e-9);
  EXPECT_NEAR(lying.yc, 50, 1e-9);
  EXPECT_NEAR(lying.roll, 90, 1e-9);
}

}  // namespace
}  // namespace evaluation
