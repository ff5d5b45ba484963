// How far found facial points are from the labelled ones, over many faces.
#pragma once

#include <array>
#include <vector>

#include "training/face_labels.h"

namespace evaluation {

using FacePoints = std::array<LabelledPoint, 40>;

// The nodes that are judged together.
using NodeGroup = std::vector<std::size_t>;
extern const NodeGroup kAllNodes;
extern const NodeGroup kPupils;
extern const NodeGroup kInnerNodes;     // eyes, brows, nose and mouth
extern const NodeGroup kOutlineNodes;   // chin, jaw, cheeks and sides
extern const NodeGroup kForeheadNodes;  // with the temples

// Points turned clockwise on the screen.
FacePoints turnedPoints(const FacePoints& points, const LabelledPoint& about, double degrees);

// The outcome on one face.
struct FoundPoints {
  FacePoints truth;
  FacePoints found;
  std::array<float, 40> confidence;  // higher is better
};

// Errors are in units of the distance of the labelled pupils.
LabelledPoint offsetOf(const FoundPoints& face, std::size_t node);  // found less true
double errorOf(const FoundPoints& face, std::size_t node);
double meanErrorOf(const FoundPoints& face, const NodeGroup& nodes);

class PointTally {
 public:
  void add(const FoundPoints& face) { faces_.push_back(face); }
  void add(const PointTally& other) { faces_.insert(faces_.end(), other.faces_.begin(), other.faces_.end()); }
  std::size_t faces() const { return faces_.size(); }

  double meanError(const NodeGroup& nodes) const;
  LabelledPoint meanOffset(std::size_t node) const;
  // Share of the faces whose mean error over the nodes is above `limit`.
  double shareAbove(double limit, const NodeGroup& nodes) const;

  // Mean errors of the tenth of the points with the lowest and of the tenth with the highest confidence.
  struct Tenths {
    double worst = 0;
    double best = 0;
  };
  Tenths tenthsByConfidence(const NodeGroup& nodes) const;

 private:
  std::vector<FoundPoints> faces_;
};

}  // namespace evaluation
