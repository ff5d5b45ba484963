// Training of the forty networks on prepared frames.
#pragma once

#include <array>
#include <vector>

#include "training/features/node_network.h"
#include "training/features/node_targets.h"
#include "training/features/patch_frame.h"

// Where the search put the nodes of a frame: places that must not look like a node, unless they are right.
using SearchGrid = std::array<float, 80>;  // x and y in turn, pixels of the frame

struct TrainerOptions {
  int epochs = 12;
  int offsets = 10;  // patches of each frame, node and epoch
  double rate = 2e-3;
  double decay = 1e-3;   // of the input weights, times the rate
  double warmUp = 0.05;  // share of the steps in which the rate rises; then it falls as a cosine
  double near = 5;       // s.d. of the offsets close by, pixels
  double nearShare = 0.70;
  double middle = 24;  // reach of the uniform offsets
  double middleShare = 0.28;
  double far = 70;          // reach of the rest
  double minedShare = 0.5;  // of the patches of a frame with grids, taken where the search went
  double minedNear = 1.5;   // s.d. round these places, pixels
  NodeTargets targets;
  unsigned seed = 1;
  unsigned threads = 2;
};

struct TrainingSet {
  std::vector<PatchFrame> frames;
  std::vector<std::vector<SearchGrid>> grids;  // of each frame, or none at all
  LabelShifts shifts{};
};

struct TrainedPlace {
  double x, y;
};

// A place of a patch about a node at `truth`: most close by, a few anywhere.
TrainedPlace drawTrainedPlace(const TrainerOptions& options, const TrainedPlace& truth, std::mt19937& random);

// Adds the gradient of the squared error of the patch at `place`, times `weight`; returns that square.
double addPatch(const PatchFrame& frame, const TrainedPlace& truth, const TrainedPlace& place, const TargetBells& bells,
                double weight, const NodeNetwork& network, NodeNetwork& gradient);

// The rate once `done` of the steps, 0 .. 1, are done: it rises while it warms up, without which the first steps would
// saturate a fresh network, then falls as a cosine.
double rateAt(double rate, double warmUp, double done);

// Trains all networks from where they stand, each by itself, so that the result does not depend on the number of
// threads. Returns each network's mean squared error over the last epoch.
std::vector<double> trainNodes(const TrainingSet& set, const TrainerOptions& options,
                               std::vector<NodeNetwork>& networks);

// Forty networks of random weights.
std::vector<NodeNetwork> randomNetworks(unsigned seed);
