#include <gtest/gtest.h>
#include <signal.h>
#include <sys/time.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <ostream>
#include <stdexcept>

#include "api/vizl_api.h"
#include "features/TNeuroLocator.h"
#include "tests/features/reference_search.h"

namespace {

struct Found {
  TGrid grid;
  std::vector<float> confidence;
  float similarity;
  std::size_t evaluations;
};

Found locate(TNeuroLocator& locator, TIppiImage& face) {
  Found found;
  locator.Result = &found.grid;
  found.similarity = locator.LocateGrid(face);
  found.confidence.assign(locator.NodeConfidence, locator.NodeConfidence + kNodes);
  found.evaluations = locator.Scores.Evaluations();
  return found;
}

void expectSame(const Found& a, const Found& b) {
  EXPECT_EQ(a.confidence, b.confidence);
  EXPECT_EQ(a.similarity, b.similarity);
  ASSERT_EQ(a.grid.NodeCount(), b.grid.NodeCount());
  for (std::size_t n = 0; n < a.grid.Nodes.size(); ++n) {
    EXPECT_EQ(a.grid.Nodes[n].x, b.grid.Nodes[n].x) << n;
    EXPECT_EQ(a.grid.Nodes[n].y, b.grid.Nodes[n].y) << n;
  }
}

struct FaceSize {
  int width, height;
  unsigned seed;
};

void PrintTo(const FaceSize& size, std::ostream* out) { *out << size.width << " by " << size.height; }

class LocateGridAsReference : public testing::TestWithParam<FaceSize> {};

TEST_P(LocateGridAsReference, FindsTheSameToTheLastBit) {
  const auto [width, height, seed] = GetParam();
  const SearchModel model = makeSearchModel(seed);
  TIppiImage face;
  fillFace(face, width, height, seed);
  ReferenceSearch plain(model, face);
  const float similarity = plain.Locate();
  const int draw = std::rand();

  const TNeuroLocator master(model.Data());
  TNeuroLocator locator(master);
  const Found found = locate(locator, face);
  EXPECT_EQ(std::rand(), draw) << "another number of draws";
  EXPECT_EQ(found.evaluations, static_cast<std::size_t>(plain.evaluations));
  EXPECT_NEAR(found.similarity, similarity, 1e-5F);
  ASSERT_EQ(found.grid.NodeCount(), kNodes);
  for (std::size_t n = 0; n < kNodes; ++n) {
    EXPECT_EQ(found.grid.Nodes[n].x, plain.result[n].x) << n;
    EXPECT_EQ(found.grid.Nodes[n].y, plain.result[n].y) << n;
    EXPECT_EQ(found.confidence[n], plain.confidence[n]) << n;
  }
  if (width == 256 && height == 256) {
    EXPECT_GE(plain.slidePlaces, 289 + 80);
    EXPECT_LE(plain.slidePlaces, 289 + 81);
  }
}

// Small faces have nodes in the first rows and columns, where patches share their gray ranges.
INSTANTIATE_TEST_SUITE_P(Sizes, LocateGridAsReference,
                         testing::Values(FaceSize{256, 256, 1}, FaceSize{200, 256, 3}, FaceSize{255, 180, 4},
                                         FaceSize{40, 33, 5}),
                         [](const auto& instance) {
                           return std::to_string(instance.param.width) + "x" + std::to_string(instance.param.height) +
                                  "_" + std::to_string(instance.param.seed);
                         });

class LocateGrid : public testing::Test {
 protected:
  void SetUp() override { fillFace(face_, 256, 256, 9); }
  void TearDown() override { NeedInterrupt = 0; }

  SearchModel model_ = makeSearchModel(11);
  TNeuroLocator master_{model_.Data()};
  TIppiImage face_;
};

TEST_F(LocateGrid, RepeatsItselfWhateverCameBefore) {
  TNeuroLocator locator(master_);
  const Found first = locate(locator, face_);
  TIppiImage other;
  fillFace(other, 130, 256, 10);
  locate(locator, other);
  std::srand(5);
  expectSame(first, locate(locator, face_));
  TNeuroLocator copy(locator);
  expectSame(first, locate(copy, face_));
}

TEST_F(LocateGrid, KeepsTheNodesInTheImage) {
  TIppiImage tiny;
  for (const int side : {1, 2, 7, 31}) {
    fillFace(tiny, side, side, 3);
    TNeuroLocator locator(master_);
    const Found found = locate(locator, tiny);
    ASSERT_EQ(found.grid.NodeCount(), kNodes);
    for (std::size_t n = 0; n < kNodes; ++n) {
      // Shapes are held in the frame only; a node that ends outside the image has no place to be scored at.
      const TSPoint node = found.grid.Nodes[n];
      EXPECT_TRUE(node.x >= 0 && node.x <= 255 && node.y >= 0 && node.y <= 255) << n;
      const bool reached = node.x < static_cast<float>(side) && node.y < static_cast<float>(side);
      if (!reached) {
        EXPECT_EQ(found.confidence[n], -1e10F) << n;
      }
    }
  }
}

void interrupt(int) { NeedInterrupt = 1; }

// Wherever the search is when the flag goes up, it ends with forty nodes, and confidences of none or all of them.
TEST_F(LocateGrid, EndsWellWhereverItIsInterrupted) {
  struct sigaction action = {}, before = {};
  action.sa_handler = interrupt;
  sigaction(SIGALRM, &action, &before);
  TNeuroLocator locator(master_);
  for (int microseconds = 100; microseconds < 60000; microseconds = microseconds * 3 / 2) {
    NeedInterrupt = 0;
    const itimerval timer{{0, 0}, {0, microseconds}};
    setitimer(ITIMER_REAL, &timer, nullptr);
    const Found found = locate(locator, face_);
    const itimerval off{};
    setitimer(ITIMER_REAL, &off, nullptr);
    ASSERT_EQ(found.grid.NodeCount(), kNodes);
    EXPECT_TRUE(std::isfinite(found.similarity));
    const auto zeros = std::count(found.confidence.begin(), found.confidence.end(), 0.0F);
    EXPECT_TRUE(zeros == 0 || zeros == kNodes) << zeros;
  }
  sigaction(SIGALRM, &before, nullptr);
}

TEST_F(LocateGrid, RefusesWhatDoesNotFitItsTables) {
  TNeuroLocator locator(master_);
  EXPECT_THROW(locator.LocateGrid(face_), std::invalid_argument) << "no place for the result";
  TGrid grid;
  locator.Result = &grid;
  for (const auto& [width, height] : {std::pair{257, 256}, {256, 257}, {4000, 3}}) {
    TIppiImage large;
    fillFace(large, width, height, 1);
    EXPECT_THROW(locator.LocateGrid(large), std::invalid_argument);
  }
  TIppiImage empty(imGray8), colour(imRGB24);
  colour.AllocNew(256, 256);
  EXPECT_THROW(locator.LocateGrid(empty), std::invalid_argument);
  EXPECT_THROW(locator.LocateGrid(colour), std::invalid_argument);
}

}  // namespace
