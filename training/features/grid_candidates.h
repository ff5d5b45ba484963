// Grids among which training makes the networks choose.
#pragma once

#include <random>
#include <vector>

#include "training/features/node_trainer.h"

struct CandidateOptions {
  int bent = 12;         // grids round the labels
  int between = 8;       // grids between the labels and where the search ended, and round that place
  double least = 0.3;    // smallest strength; at 1 a grid moves by 0.5 or 1.3 pixels (s.d.)
  double most = 4;       // largest
  double shorter = 0.7;  // strength round searched places, times that
};

// Draws grids round labelled ones. What is drawn is what the search can reach: rows of the shape model and the pose.
class GridCandidates {
 public:
  // `eigenGrids` are 32 rows of 80; `spreads` how far faces lie along each, pixels.
  GridCandidates(const std::vector<float>& eigenGrids, const std::vector<double>& spreads,
                 const CandidateOptions& options);

  // The labels, grids round them, the searched grids and, if there are any, grids round these.
  void draw(const SearchGrid& truth, const std::vector<SearchGrid>& searched, std::mt19937& random,
            std::vector<SearchGrid>& candidates) const;

 private:
  void bend(SearchGrid& grid, double strength, unsigned every, std::mt19937& random) const;
  void place(SearchGrid& grid, double strength, std::mt19937& random) const;
  void disturb(SearchGrid& grid, double strength, std::mt19937& random) const;
  double drawStrength(std::mt19937& random) const;

  const std::vector<float>& eigenGrids_;
  std::vector<double> steps_;  // of each row, pixels
  CandidateOptions options_;
};
