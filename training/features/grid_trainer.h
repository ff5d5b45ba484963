// Training of all networks together, on whole grids.
#pragma once

#include <cstddef>
#include <random>
#include <vector>

#include "training/features/grid_candidates.h"
#include "training/features/node_trainer.h"

struct GridTrainerOptions {
  CandidateOptions candidates;
  double sharpness = 1;       // of the choice between grids, for a sum over the nodes that is larger by 1
  double evenShare = 0.7;     // of the frames, whose grids are read at even places as the genetic stage reads them
  double stepWeight = 1;      // of the last step of each node
  double stepSharpness = 15;  // for a network that answers less by 1
  double squaresWeight = 1;   // of the squared errors of single networks, which hold them to a shape that leads uphill
  int squares = 2;            // patches of each frame and node for these
  double pupilWeight = 3;     // in a grid's error; an inner node counts 1
  double outlineWeight = 0.4;
  double foreheadWeight = 0.02;
  std::size_t batch = 32;  // frames
  double rate = 2e-4;
  double decay = 1e-3;  // of the input weights, times the rate
  double warmUp = 0.03;
};

// What a frame cost on average.
struct GridLosses {
  double risk = 0;     // expected error of the chosen grid, % of the pupils' distance
  double steps = 0;    // the same of nodes that take a last step each
  double squares = 0;  // mean squared error of single networks
};

// The search takes the grid with the largest sum over all nodes. Networks that were trained one by one do not know what
// the others say there. Here each candidate grid of a frame is chosen with the odds of a softmax over these sums, and
// the error that is to be expected of the choice becomes small (minimum risk training: Och 2003, Smith and Eisner
// 2006).
class GridTrainer {
 public:
  // `steps` batches will come in all: over them the rate rises and falls. What is handed over has to stay.
  // The grids of the set are pairs, the one that a search bent to the picture and the one of the last steps from there.
  GridTrainer(const TrainingSet& set, const GridCandidates& candidates, const TrainerOptions& single,
              const GridTrainerOptions& options, std::size_t steps, std::vector<NodeNetwork>& networks);

  // One batch after the other from these frames of the set. The result does not depend on the number of threads.
  GridLosses train(const std::vector<std::size_t>& places);

 private:
  // A part of each batch with sums of its own, which are added up in order.
  struct Lane {
    std::mt19937 random;
    std::vector<NodeNetwork> gradients;
    GridLosses losses;
  };

  struct Choice;

  void addFrame(Lane& lane, std::size_t place) const;
  void addChoice(Lane& lane, const PatchFrame& frame, const SearchGrid& truth, Choice& choice) const;
  void addSteps(Lane& lane, const PatchFrame& frame, const SearchGrid& truth,
                const std::vector<SearchGrid>& searched) const;
  void addSquares(Lane& lane, const PatchFrame& frame, const SearchGrid& truth) const;
  void step(std::size_t node);

  const TrainingSet& set_;
  const GridCandidates& candidates_;
  const TrainerOptions& single_;
  const GridTrainerOptions& options_;
  std::vector<NodeNetwork>& networks_;
  std::vector<double> weights_;  // of the nodes in a grid's error; their sum is 100, which makes it a percentage
  std::vector<AdamSteps> adam_;
  std::vector<Lane> lanes_;
  std::size_t steps_;
  std::size_t done_ = 0;
};
