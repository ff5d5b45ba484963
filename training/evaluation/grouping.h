// From the raw hits of one scan to faces.
#pragma once

#include <vector>

#include "detect/TRectangle.h"
#include "training/evaluation/matching.h"

class TIppiFaceDetector;

namespace evaluation {

// The library's own filter and grouping with threshold `t` (as VIZL_SetFaceDetectionThreshold takes it), in a
// context of its own.
std::vector<Detection> libraryGroups(TIppiFaceDetector& detector, std::vector<TRectangle>& hits, int t);

struct HitGroup {
  Detection face;
  int hits = 0;
};

// Hits grouped by how close they lie relative to their own size. The library's distance follows the mean width
// of all hits of a picture, which mixes up faces of very different sizes; this one does not.
std::vector<HitGroup> relativeGroups(const std::vector<TRectangle>& hits);

}  // namespace evaluation
