// The frames of labelled faces that the networks are trained on.
#pragma once

#include <random>
#include <string>
#include <vector>

#include "training/features/feature_frame.h"

// How a frame's place differs from the labelled square. Deviations are normal and clamped.
struct PlaceJitter {
  double shift = 0.03;  // s.d. of the centre, widths
  double shiftLimit = 0.08;
  double width = 0.985;  // mean, widths: detections are a little small
  double scale = 0.05;   // s.d. of the width, widths
  double scaleLimit = 0.12;
  double turn = 2.8;  // s.d., degrees
  double turnLimit = 7;
};

struct CollectorOptions {
  PlaceJitter jitter;
  double maxTurn = 22;        // of the pictures of the turned kind, degrees to either side
  double smallestWidth = 60;  // of the faces of the reduced kind, pixels
  double largestWidth = 110;
  std::vector<int> kinds = {0, 1, 2, 3};
  unsigned seed = 1;
  unsigned threads = 2;
};

TFacePosition jitteredPlace(const FaceSquare& square, const PlaceJitter& jitter, std::mt19937& random);

// Frames of every face and of its mirror image, in the order of the faces, whatever the number of threads.
std::vector<FeatureFrame> collectFrames(const std::string& folder, const std::vector<FaceLabel>& faces,
                                        const CollectorOptions& options);
