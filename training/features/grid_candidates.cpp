#include "training/features/grid_candidates.h"

#include <algorithm>
#include <cmath>

#include "features/shape_tables.h"

namespace {

constexpr double kStepShare = 0.35;  // of a row's spread
constexpr double kLargestStep = 4;   // pixels, over all nodes

// At strength 1.
constexpr double kMove = 1;        // pixels
constexpr double kStretch = 0.02;  // of each axis
constexpr double kTurn = 0.012;    // radians

double normal(std::mt19937& random) { return std::normal_distribution<double>()(random); }
double uniform(std::mt19937& random) { return std::uniform_real_distribution<double>()(random); }

double centreOf(const SearchGrid& grid, std::size_t axis) {
  double sum = 0;
  for (std::size_t k = axis; k < kCoordinates; k += 2) sum += static_cast<double>(grid[k]);
  return sum / kNodes;
}

}  // namespace

GridCandidates::GridCandidates(const std::vector<float>& eigenGrids, const std::vector<double>& spreads,
                               const CandidateOptions& options)
    : eigenGrids_(eigenGrids), options_(options) {
  for (const double spread : spreads) steps_.push_back(std::min(kStepShare * spread, kLargestStep));
}

void GridCandidates::draw(const SearchGrid& truth, const std::vector<SearchGrid>& searched, std::mt19937& random,
                          std::vector<SearchGrid>& candidates) const {
  candidates.assign(1, truth);
  for (int i = 0; i < options_.bent; ++i) disturb(candidates.emplace_back(truth), drawStrength(random), random);
  candidates.insert(candidates.end(), searched.begin(), searched.end());
  if (searched.empty()) return;
  for (int i = 0; i < options_.between; ++i) {
    const SearchGrid& end = searched[random() % searched.size()];
    const auto share = static_cast<float>(i % 2 == 0 ? 1.4 * uniform(random) : 1.0);
    SearchGrid& grid = candidates.emplace_back(truth);
    for (std::size_t k = 0; k < kCoordinates; ++k) grid[k] += share * (end[k] - truth[k]);
    disturb(grid, options_.shorter * drawStrength(random), random);
  }
}

double GridCandidates::drawStrength(std::mt19937& random) const {
  return options_.least * std::pow(options_.most / options_.least, uniform(random));
}

// A third each: bent along all rows, along a few of them but farther, moved above all.
void GridCandidates::disturb(SearchGrid& grid, double strength, std::mt19937& random) const {
  const auto way = random() % 3;
  if (way == 0) bend(grid, 0.6 * strength, 1, random);
  if (way == 1) bend(grid, 1.5 * strength, 6, random);
  place(grid, (way == 2 ? 1.3 : 0.5) * strength, random);
}

// One row in `every` or so.
void GridCandidates::bend(SearchGrid& grid, double strength, unsigned every, std::mt19937& random) const {
  for (std::size_t m = 0; m < steps_.size(); ++m) {
    if (random() % every != 0) continue;
    const auto step = static_cast<float>(strength * steps_[m] * normal(random));
    for (std::size_t k = 0; k < kCoordinates; ++k) grid[k] += step * eigenGrids_[m * kCoordinates + k];
  }
}

void GridCandidates::place(SearchGrid& grid, double strength, std::mt19937& random) const {
  const double middleX = centreOf(grid, 0), middleY = centreOf(grid, 1);
  const double x = middleX + strength * kMove * normal(random), y = middleY + strength * kMove * normal(random);
  const double scaleX = 1 + strength * kStretch * normal(random), scaleY = 1 + strength * kStretch * normal(random);
  const double angle = strength * kTurn * normal(random), c = std::cos(angle), s = std::sin(angle);
  for (std::size_t k = 0; k < kCoordinates; k += 2) {
    const double dx = (static_cast<double>(grid[k]) - middleX) * scaleX;
    const double dy = (static_cast<double>(grid[k + 1]) - middleY) * scaleY;
    grid[k] = static_cast<float>(c * dx - s * dy + x);
    grid[k + 1] = static_cast<float>(s * dx + c * dy + y);
  }
}
