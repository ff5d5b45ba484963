// When a detection counts as the labelled face, and the sums over many pictures.
#pragma once

#include <optional>
#include <vector>

#include "training/face_labels.h"

namespace evaluation {

struct Detection {
  double cx = 0;  // centre, pixels, y from the top
  double cy = 0;
  double w = 0;      // side, pixels
  double angle = 0;  // degrees clockwise that turn the face upright
};

// In units of the labelled square's side.
struct Criterion {
  double centre = 0.25;
  double minWidth = 0.7;
  double maxWidth = 1.4;
};

bool matches(const FaceSquare& truth, const Detection& detection, const Criterion& criterion);

// How far a detection is off, in the face's own frame.
struct Deviation {
  double dx = 0;     // units of the square's side, positive to the right
  double dy = 0;     // positive downwards
  double width = 0;  // ratio to the square's side
  double angle = 0;  // degrees, detected less true
};

Deviation deviationOf(const FaceSquare& truth, const Detection& detection);

// The outcome on one picture with one labelled face.
struct PictureResult {
  std::optional<Detection> found;          // the matching detection nearest to the label
  int repeats = 0;                         // further detections that match the same label
  std::vector<Detection> falseDetections;  // detections that match nothing
};

PictureResult judge(const FaceSquare& truth, const std::vector<Detection>& detections, const Criterion& criterion);

struct Tally {
  int faces = 0;
  int found = 0;
  int repeats = 0;
  int falseFaces = 0;
  Deviation sum;           // over the found faces
  double absAngleSum = 0;  // degrees

  void add(const FaceSquare& truth, const PictureResult& result);
  void add(const Tally& other);
  double share() const { return faces > 0 ? static_cast<double>(found) / faces : 0; }
  Deviation mean() const;
  double meanAbsAngle() const { return found > 0 ? absAngleSum / found : 0; }
};

}  // namespace evaluation
