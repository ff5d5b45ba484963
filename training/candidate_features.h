// The pool of Haar features that boosting draws from.
#pragma once

#include <vector>

#include "training/cascade_stream.h"

struct CandidateFeature {
  int count;  // rectangles in use, 2 or 3
  HaarRect rects[3];
};

// Every feature of the kinds
//   halves, side by side or one above the other     (whole -1, one half 2)
//   thirds, the middle one against the whole        (whole -1, middle third 3)
//   quarters, the middle two against the whole      (whole -1, middle half 2)
//   quadrants, one diagonal against the whole       (whole -1, two quadrants 2; three rectangles)
// in the 20 by 20 window whose whole covers `minArea` pixels or more.
std::vector<CandidateFeature> allCandidateFeatures(int minArea);
