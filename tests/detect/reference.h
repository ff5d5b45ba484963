// The detector in its slow and obvious form, over images and primitives of the library below it.
#pragma once

#include <vector>

#include "detect/TRectangle.h"
#include "tests/detect/cascade_builder.h"

class TIppiImage;

namespace reference {

struct Thresholds {
  int threshold1 = 2;
  int threshold2 = 3;
};

struct Cluster {
  int x1 = 0, y1 = 0, x2 = 0, y2 = 0, count = 0;
  bool operator==(const Cluster&) const = default;
};

struct Groups {
  std::vector<TRectangle> rects;
  std::vector<int> counts;
};

struct Candidates {
  std::vector<TRectangle> rects;
  std::vector<int> passes;
  std::vector<int> counts;
};

struct Face {
  int xc = 0, yc = 0, w = 0;
  double angle = 0;
  int confidence = -1;
  bool operator==(const Face&) const = default;
};

struct Settings {
  bool rotations = true;
  bool angle = true;
  int width = 384;
  Thresholds thresholds;
};

std::vector<TRectangle> detectFaceRaw(const TestCascade& cascade, TIppiImage& image, float scale);
std::vector<TRectangle> supported(const std::vector<TRectangle>& rects, const Thresholds& thresholds);
Cluster clusterFace(const std::vector<TRectangle>& rects, const Thresholds& thresholds);
std::vector<int> groupFace(const std::vector<TRectangle>& rects, float& distance);
Candidates resultDetectFaces(const TestCascade& cascade, TIppiImage& image, const Settings& settings);
Face detectFace(const TestCascade& cascade, TIppiImage& image, const Settings& settings);
std::vector<Face> detectMultipleFaces(const TestCascade& cascade, TIppiImage& image, const Settings& settings,
                                      int maxSizeInBytes);

}  // namespace reference

inline bool operator==(const TRectangle& a, const TRectangle& b) {
  return a.x1 == b.x1 && a.y1 == b.y1 && a.x2 == b.x2 && a.y2 == b.y2;
}
