// One search window as the trainer reads it: what each feature says, and where the eye is.
#pragma once

#include <cstdint>
#include <vector>

#include "training/eyes/eye_frames.h"

class TEyeHMaxFeatures;

// A response of the S1 layer that is not 0, which few are.
struct S1Entry {
  std::uint8_t map;  // 8 * band + orientation
  std::uint8_t x;
  std::uint8_t y;
  std::uint8_t bin;  // 1 to 12
};

struct EyeSample {
  static constexpr int kSide = 32;

  std::uint8_t patterns0[32 * 32];  // codes, row by row
  std::uint8_t patterns1[16 * 16];
  std::uint8_t patterns2[8 * 8];
  std::uint8_t c1[32 * 32][16];  // bins at each place, orientations and bands in any order
  std::vector<S1Entry> s1;
  // The frame's place of the pupil in the window, pixels; the window of the second eye is mirrored.
  double x;
  double y;
};

// `eye` is 0 or 1, as in the frame.
EyeSample makeEyeSample(const EyeFrame& frame, int eye, const TEyeHMaxFeatures& prototype);

// The search reports whole pixels of the crop's corner grid, truncated, so its results lie half a crop pixel up and
// left of the pixel that it chose. This is the place in the picture's own crop that a chosen place stands for.
LabelledPoint reportedPlace(double x, double y, int eye);
