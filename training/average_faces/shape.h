// The common frame of the averages and the shapes in it.
#pragma once

#include <complex>
#include <vector>

#include "training/face_labels.h"

using Shape = std::vector<LabelledPoint>;

// The frame that every face is brought to: eyes level, 64 pixels apart, room for hair and shoulders.
constexpr int kFrameWidth = 288;
constexpr int kFrameHeight = 360;
constexpr double kFrameEyeDistance = 64.0;
constexpr LabelledPoint kFrameEyeMiddle{144.0, 160.0};

// Turn, size and shift as one complex factor and one offset.
struct Similarity {
  std::complex<double> factor;
  std::complex<double> offset;
  LabelledPoint operator()(LabelledPoint p) const;
  Similarity inverse() const { return {1.0 / factor, -offset / factor}; }
};

// Least squares over all points.
Similarity fitSimilarity(const Shape& from, const Shape& to);

// Brings the two eyes (points 0 and 1) to their places in the frame.
Similarity eyesToFrame(const Shape& shape);

// Mean of the shapes, each fitted to the mean so far, at last with the eyes in their places.
Shape meanShape(const std::vector<Shape>& shapes);

// Points around the frame that go along with the nodes, so that hair and ground are warped too.
Shape frameBorder();
