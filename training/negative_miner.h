// Hard negatives: windows without a face that a cascade still takes for one.
#pragma once

#include <cstdint>
#include <vector>

#include "detect/TIppiFaceDetector.h"
#include "training/window_samples.h"

struct MiningPlan {
  std::size_t wanted = 0;        // windows
  std::size_t perScan = 24;      // at most so many windows of one scan, drawn at random
  std::size_t maxScans = 40000;  // gives up after so many scans
  double portraitShare = 0.5;    // share of scans on portraits (outside their faces, or turned over)
  std::uint32_t seed = 0;
  unsigned threads = 2;
};

// Scans of random pictures, each turned, mirrored, enlarged or inverted at random, until enough windows pass. The
// result depends on the seed alone, not on the number of threads.
std::vector<Window> mineNegatives(const TIppiFaceDetector& detector, std::vector<TrainingPicture>& backgrounds,
                                  std::vector<TrainingPicture>& portraits, const MiningPlan& plan,
                                  std::size_t& scansDone);
