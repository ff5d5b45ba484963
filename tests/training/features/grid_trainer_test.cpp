#include "training/features/grid_trainer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

#include "features/shape_tables.h"

namespace {

constexpr float kWrongWay = 12;  // from the squares to the brighter ones, pixels

struct Centre {
  int x, y;
};

void drawSquare(FeatureFrame& frame, const Centre& centre, std::uint8_t gray) {
  for (int y = centre.y - 4; y < centre.y + 4; ++y) {
    for (int x = centre.x - 4; x < centre.x + 4; ++x) {
      frame.pixels[static_cast<std::size_t>(y * kFrameSide + x)] = gray;
    }
  }
}

// The nodes lie on forty gray squares in rows; each has a brighter one to its right.
FeatureFrame squaresFrame(unsigned seed) {
  std::mt19937 random(seed);
  FeatureFrame frame{};
  for (std::uint8_t& pixel : frame.pixels) pixel = static_cast<std::uint8_t>(60 + random() % 20);
  const int left = 20 + static_cast<int>(random() % 12), top = 20 + static_cast<int>(random() % 20);
  for (int n = 0; n < kNodes; ++n) {
    const Centre node = {left + n % 4 * 52, top + n / 4 * 20};
    drawSquare(frame, node, 150);
    drawSquare(frame, {node.x + static_cast<int>(kWrongWay), node.y}, 190);
    frame.points[static_cast<std::size_t>(2 * n)] = static_cast<float>(node.x);
    frame.points[static_cast<std::size_t>(2 * n + 1)] = static_cast<float>(node.y);
  }
  return frame;
}

SearchGrid truthOf(const PatchFrame& frame) { return frame.points; }

SearchGrid wrongOf(const PatchFrame& frame) {
  SearchGrid grid = frame.points;
  for (std::size_t k = 0; k < grid.size(); k += 2) grid[k] += kWrongWay;
  return grid;
}

TrainingSet squaresSet(unsigned first, unsigned count) {
  TrainingSet set;
  for (unsigned i = 0; i < count; ++i) {
    set.frames.emplace_back(squaresFrame(first + i));
    set.grids.push_back({wrongOf(set.frames.back())});
  }
  return set;
}

// What the search adds up.
double similarity(const PatchFrame& frame, const SearchGrid& grid, const std::vector<NodeNetwork>& networks) {
  double sum = 0;
  for (std::size_t n = 0; n < networks.size(); ++n) {
    alignas(64) float inputs[kPatchPixels];
    float hidden[kHiddenNeurons];
    frame.read(static_cast<int>(grid[2 * n]), static_cast<int>(grid[2 * n + 1]), inputs);
    sum += 1 - static_cast<double>(evaluateNetwork(networks[n], inputs, hidden));
  }
  return sum;
}

int rightlyChosen(const std::vector<NodeNetwork>& networks) {
  int count = 0;
  for (const PatchFrame& frame : squaresSet(1000, 20).frames) {
    count += similarity(frame, truthOf(frame), networks) > similarity(frame, wrongOf(frame), networks) + 1 ? 1 : 0;
  }
  return count;
}

struct Rows {
  std::vector<float> eigenGrids = std::vector<float>(kDeformations * kCoordinates);
  std::vector<double> spreads = std::vector<double>(kDeformations, 0.0);

  Rows() {
    for (std::size_t m = 0; m < kDeformations; ++m) eigenGrids[m * kCoordinates + m] = 1;
    spreads[3] = 10;
  }
};

std::vector<NodeNetwork> trainedOn(const TrainingSet& set, unsigned threads, GridLosses& first, GridLosses& last,
                                   double stepWeight = 1) {
  const Rows rows;
  const GridCandidates candidates(rows.eigenGrids, rows.spreads, {});
  TrainerOptions single;
  single.threads = threads;
  GridTrainerOptions options;
  options.rate = 1e-3;
  options.squaresWeight = 0.05;
  options.stepWeight = stepWeight;
  std::vector<NodeNetwork> networks = randomNetworks(3);
  std::vector<std::size_t> places;
  for (std::size_t i = 0; i < 8 * options.batch; ++i) places.push_back(i % set.frames.size());
  constexpr std::size_t kRounds = 4;
  GridTrainer trainer(set, candidates, single, options, kRounds * places.size() / options.batch, networks);
  first = trainer.train(places);
  for (std::size_t round = 1; round < kRounds; ++round) last = trainer.train(places);
  return networks;
}

TEST(GridTrainer, PrefersTheLabelsToWhereASearchEnded) {
  const TrainingSet set = squaresSet(0, 40);
  const int before = rightlyChosen(randomNetworks(3));
  GridLosses first, last;
  const auto networks = trainedOn(set, 2, first, last);
  EXPECT_LT(before, 15);
  EXPECT_GE(rightlyChosen(networks), 19);
  EXPECT_LT(last.risk, first.risk / 2);
}

// Where the searches ended every step to the left is right, and far from the squares nothing else teaches that.
TEST(GridTrainer, LeadsTheLastStepsTowardsTheLabels) {
  const TrainingSet set = squaresSet(0, 40);
  GridLosses first, last, without;
  trainedOn(set, 2, first, last);
  trainedOn(set, 2, first, without, 0);
  const double distance = std::hypot(52.0, 0.0), shortest = 100 * (kWrongWay - 1) / distance;
  EXPECT_GT(last.steps, shortest);
  EXPECT_LT(last.steps - shortest, 0.8 * (without.steps - shortest));
}

TEST(GridTrainer, GivesTheSameWeightsOnAnyNumberOfThreads) {
  const TrainingSet set = squaresSet(0, 8);
  GridLosses losses;
  const auto one = trainedOn(set, 1, losses, losses), three = trainedOn(set, 3, losses, losses);
  for (std::size_t n = 0; n < one.size(); ++n) {
    EXPECT_EQ(std::memcmp(&one[n], &three[n], sizeof(NodeNetwork)), 0) << n;
  }
}

TEST(GridCandidates, StrayFromTheLabelsAsFarAsTheStrengthTells) {
  const Rows rows;
  CandidateOptions options;
  options.bent = 400;
  options.between = 0;
  options.least = options.most = 2;
  SearchGrid truth;
  for (std::size_t k = 0; k < truth.size(); ++k) truth[k] = static_cast<float>(60 + 13 * k % 140);
  std::mt19937 random(5);
  std::vector<SearchGrid> candidates;
  GridCandidates(rows.eigenGrids, rows.spreads, options).draw(truth, {}, random, candidates);
  ASSERT_EQ(candidates.size(), 401u);
  EXPECT_EQ(candidates[0], truth);
  double sum = 0, squares = 0, bentSquares = 0;
  for (std::size_t i = 1; i < candidates.size(); ++i) {
    double middle = 0;
    for (std::size_t k = 0; k < truth.size(); k += 2)
      middle += static_cast<double>(candidates[i][k] - truth[k]) / kNodes;
    sum += middle / 400;
    squares += middle * middle / 400;
    // The second node also goes up and down along row 3, the only one with a spread.
    bentSquares += std::pow(static_cast<double>(candidates[i][3] - truth[3]), 2) / 400;
  }
  // Moves of 1.3 times the strength in a third of the grids, of half of it in the others.
  EXPECT_NEAR(std::sqrt(squares), 2 * std::sqrt((1.3 * 1.3 + 0.25 + 0.25) / 3), 0.25);
  EXPECT_NEAR(sum, 0, 0.3);
  EXPECT_GT(bentSquares, 2 * squares);
}

}  // namespace
