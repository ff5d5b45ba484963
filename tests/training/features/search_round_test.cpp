#include "training/features/search_round.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <random>

#include "features/TNeuroLocator.h"
#include "features/mean_grid.h"
#include "training/features/network_file.h"

namespace {

std::vector<FeatureFrame> noiseFrames(std::size_t count) {
  std::vector<FeatureFrame> frames(count);
  std::mt19937 random(9);
  for (FeatureFrame& frame : frames) {
    for (std::uint8_t& pixel : frame.pixels) pixel = static_cast<std::uint8_t>(random() % 256);
    for (std::size_t n = 0; n < 40; ++n) {
      frame.points[2 * n] = MeanGrid40.Nodes[n].x;
      frame.points[2 * n + 1] = MeanGrid40.Nodes[n].y;
    }
  }
  return frames;
}

std::vector<float> unitRows() {
  std::vector<float> rows(32 * 80);
  for (std::size_t k = 0; k < 32; ++k) rows[k * 80 + k] = 1;
  return rows;
}

TEST(SearchFrames, GivesTheLibrarysResults) {
  const auto frames = noiseFrames(3);
  const auto networks = randomNetworks(6);
  const auto rows = unitRows();
  SearchOptions options;
  options.samples = 13;
  const auto searched = searchFrames(frames, {2, 0}, networks, rows, options);
  ASSERT_EQ(searched.size(), 2u);

  const auto stream = networksToStream(networks);
  TNeuroData data;
  data.Networks = stream.data();
  data.NetworksEnd = stream.data() + stream.size();
  data.EigenGrids = rows.data();
  TNeuroLocator locator(data);
  TIppiImage image;
  toImage(frames[2], image);
  TGrid grid = MeanGrid40;
  locator.Result = &grid;
  locator.LocateGrid(image);
  for (std::size_t n = 0; n < 40; ++n) {
    EXPECT_EQ(searched[0].result[2 * n], grid.Nodes[n].x);
    EXPECT_EQ(searched[0].result[2 * n + 1], grid.Nodes[n].y);
    EXPECT_LE(std::abs(searched[0].result[2 * n] - searched[0].best[2 * n]), 1.001f);  // the refinement's one pixel
  }
  EXPECT_NE(searched[0].result, searched[1].result);
}

TEST(SearchFrames, SamplesTheSameOnAnyNumberOfProcesses) {
  const auto frames = noiseFrames(3);
  const auto networks = randomNetworks(6);
  SearchOptions options;
  options.processes = 1;
  const auto one = searchFrames(frames, {0, 1, 2}, networks, unitRows(), options);
  options.processes = 3;
  const auto three = searchFrames(frames, {0, 1, 2}, networks, unitRows(), options);
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(one[i].others.size(), 16u);
    EXPECT_EQ(one[i].others, three[i].others);
    EXPECT_EQ(one[i].result, three[i].result);
    EXPECT_NE(one[i].others.front(), one[i].others.back());
    for (const SearchGrid& grid : one[i].others) {
      for (const float value : grid) EXPECT_TRUE(value >= 0 && value <= 255);
    }
  }
}

TEST(SearchErrors, AreMeasuredAgainstTheLabels) {
  const auto frames = noiseFrames(2);
  std::vector<SearchedFrame> searched(2);
  for (std::size_t i = 0; i < 2; ++i) {
    for (std::size_t k = 0; k < 80; ++k) {
      searched[i].result[k] = frames[i].points[k] + (k % 2 == 0 ? 1.0f + 2.0f * static_cast<float>(i) : -0.5f);
    }
  }
  const auto means = meanErrorsOf(frames, {0, 1}, searched);
  EXPECT_NEAR(means[10], 2, 1e-5);
  EXPECT_NEAR(means[11], -0.5, 1e-5);
  const double expected = (std::hypot(1 - 0.43, -0.5 - 0.43) + std::hypot(3 - 0.43, -0.5 - 0.43)) / 2;
  EXPECT_NEAR(innerErrorOf(frames, {0, 1}, searched, 0.43), expected / pupilDistance(frames[0]), 1e-6);
}

}  // namespace
