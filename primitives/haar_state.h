// The built form of a boosted stage, behind ippiHaarClassifier*.
#pragma once

#include <vector>

#include "primitives/haar_kernels.h"

struct IppiHaarClassifier_32f {
  // Corners of a feature in pixels of the window.
  struct Feature {
    int left;
    int top;
    int right;
    int bottom;
    float weight;
  };
  // Both lists in the order of summation: classifiers of two features, of three, then all others.
  std::vector<HaarClassifier> classifiers;
  std::vector<Feature> features;
  int twos = 0;
  int threes = 0;
  IppiSize size = {0, 0};
};

// Writes the features for an integral of `pitch` floats a row. False if a corner is out of reach of a
// 32-bit index.
bool placeHaarFeatures(const IppiHaarClassifier_32f& state, int pitch, HaarFeature* placed);
// The stage over features placed by the above, which must outlive it.
HaarStage makeHaarStage(const IppiHaarClassifier_32f& state, const HaarFeature* placed, float threshold);
