#include "training/evaluation/point_errors.h"

#include <gtest/gtest.h>

namespace evaluation {
namespace {

// Pupils 100 pixels apart, so that a pixel is 1 %; found where they are labelled.
FoundPoints perfectFace() {
  FoundPoints face{};
  for (std::size_t n = 0; n < 40; ++n) face.truth[n] = {10.0 * static_cast<double>(n), 5.0 * static_cast<double>(n)};
  face.truth[0] = {100, 300};
  face.truth[1] = {200, 300};
  face.found = face.truth;
  return face;
}

FoundPoints movedFace(const NodeGroup& nodes, double dx, double dy) {
  FoundPoints face = perfectFace();
  for (const std::size_t n : nodes) face.found[n] = {face.truth[n].x + dx, face.truth[n].y + dy};
  return face;
}

TEST(PointErrors, AreInPupilDistancesOfTheLabel) {
  FoundPoints face = movedFace({7}, 3, -4);
  face.found[0] = {0, 0};  // where the found pupils lie does not change the unit
  EXPECT_NEAR(errorOf(face, 7), 0.05, 1e-12);
  EXPECT_NEAR(offsetOf(face, 7).x, 0.03, 1e-12);
  EXPECT_NEAR(offsetOf(face, 7).y, -0.04, 1e-12);
  EXPECT_EQ(errorOf(face, 8), 0);
  EXPECT_NEAR(meanErrorOf(face, {7, 8}), 0.025, 1e-12);
}

}  // namespace
}  // namespace evaluation
