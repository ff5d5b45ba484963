// Searching training frames with the present networks.
#pragma once

#include <array>
#include <vector>

#include "training/features/feature_frame.h"
#include "training/features/node_network.h"
#include "training/features/node_trainer.h"

struct SearchOptions {
  int samples = 16;  // grids from the generations of a second search; 0 leaves that out
  unsigned seed = 1;
  unsigned processes = 2;
};

struct SearchedFrame {
  SearchGrid result;  // refined, as the library reports it
  SearchGrid best;    // the best grid before the refinement
  std::vector<SearchGrid> others;
};

// Searches the frames of these indices. No other thread may run.
std::vector<SearchedFrame> searchFrames(const std::vector<FeatureFrame>& frames, const std::vector<std::size_t>& chosen,
                                        const std::vector<NodeNetwork>& networks, const std::vector<float>& eigenGrids,
                                        const SearchOptions& options);

// Mean of the found less the labelled points, pixels of the frame.
std::array<double, 80> meanErrorsOf(const std::vector<FeatureFrame>& frames, const std::vector<std::size_t>& chosen,
                                    const std::vector<SearchedFrame>& searched);

// Mean distance of the inner nodes from their labels in the frame, pupil distances, once half a pixel of the image is
// taken off for the truncation of results.
double innerErrorOf(const std::vector<FeatureFrame>& frames, const std::vector<std::size_t>& chosen,
                    const std::vector<SearchedFrame>& searched, double truncation);
