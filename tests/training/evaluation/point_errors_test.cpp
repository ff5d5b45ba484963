#include "training/evaluation/point_errors.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

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

TEST(NodeGroups, HoldEachNodeOnce) {
  NodeGroup nodes = kInnerNodes;
  nodes.insert(nodes.end(), kOutlineNodes.begin(), kOutlineNodes.end());
  nodes.insert(nodes.end(), kForeheadNodes.begin(), kForeheadNodes.end());
  std::sort(nodes.begin(), nodes.end());
  EXPECT_EQ(nodes, kAllNodes);
  for (const std::size_t pupil : kPupils) {
    EXPECT_EQ(std::count(kInnerNodes.begin(), kInnerNodes.end(), pupil), 1) << pupil;
  }
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

TEST(PointTally, MeansOverFacesAndNodes) {
  PointTally tally;
  tally.add(movedFace(kPupils, 2, 0));
  tally.add(movedFace(kInnerNodes, 0, 12));
  tally.add(perfectFace());
  EXPECT_EQ(tally.faces(), 3u);
  EXPECT_NEAR(tally.meanError(kPupils), (0.02 + 0.12) / 3, 1e-12);
  EXPECT_NEAR(tally.meanError(kInnerNodes), (0.02 * 2 / 24 + 0.12) / 3, 1e-12);
  EXPECT_EQ(tally.meanError(kOutlineNodes), 0);
  EXPECT_NEAR(tally.meanOffset(0).x, 0.02 / 3, 1e-12);
  EXPECT_NEAR(tally.meanOffset(0).y, 0.12 / 3, 1e-12);
  EXPECT_NEAR(tally.shareAbove(0.10, kInnerNodes), 1.0 / 3, 1e-12);
  EXPECT_EQ(tally.shareAbove(0.10, kOutlineNodes), 0);
}

TEST(PointTally, TenthsGoByConfidence) {
  // Twenty points: the two least sure are 10 % off, the two surest 1 %, the others 5 %.
  FoundPoints face = movedFace(kAllNodes, 5, 0);
  NodeGroup nodes(20);
  for (std::size_t n = 0; n < 20; ++n) {
    nodes[n] = n + 5;
    face.confidence[n + 5] = static_cast<float>((n * 7) % 20);
    const double error = face.confidence[n + 5] < 2 ? 10 : face.confidence[n + 5] >= 18 ? 1 : 5;
    face.found[n + 5].x = face.truth[n + 5].x + error;
  }
  PointTally tally;
  tally.add(face);
  const PointTally::Tenths tenths = tally.tenthsByConfidence(nodes);
  EXPECT_NEAR(tenths.worst, 0.10, 1e-12);
  EXPECT_NEAR(tenths.best, 0.01, 1e-12);
}

TEST(PointTally, SaysNothingOfNoFaces) {
  const PointTally tally;
  EXPECT_EQ(tally.meanError(kInnerNodes), 0);
  EXPECT_EQ(tally.shareAbove(0.1, kInnerNodes), 0);
  EXPECT_EQ(tally.tenthsByConfidence(kAllNodes).worst, 0);
}

}  // namespace
}  // namespace evaluation
