// Candidates for tilted faces from an upright cascade: scans at -15, 0 and +15 degrees, merged.
#pragma once

#include <vector>

#include "detect/TRectangle.h"

class TIppiFaceDetector;
class TIppiImage;

class TMultiFaceDetector {
 public:
  TIppiFaceDetector* Detector;  // not owned

  explicit TMultiFaceDetector(TIppiFaceDetector* detector) : Detector(detector) {}
  virtual ~TMultiFaceDetector() = default;

  // `angle` in radians; the rectangles are in the coordinates of the rotated image.
  void RunFaceDetectionRotated(TIppiImage& image, float angle, std::vector<TRectangle>& rects);
  // Appends to `kept` the rectangles of `raw` that have enough neighbours.
  void DetectFace(std::vector<TRectangle>& raw, std::vector<TRectangle>& kept, int context);
  // The arrays returned through int*& are made by new[] and belong to the caller.
  void GroupFace(std::vector<TRectangle>& rects, int*& groups, int& lastGroup, float& distance);
  void SelectFace(std::vector<TRectangle>& rects, int* groups, int lastGroup, int*& x1, int*& y1, int*& x2, int*& y2,
                  int*& counts);
  // `passes` (0 for -15 degrees, 1 for 0, 2 for +15) and `counts` have one entry per face.
  void ResultDetectFaces(TIppiImage& image, std::vector<TRectangle>& faces, int*& passes, int*& counts, int context);
};
