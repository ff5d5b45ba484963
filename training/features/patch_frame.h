// A frame prepared for reading many normalised patches.
#pragma once

#include <cstdint>
#include <vector>

#include "features/patch.h"
#include "primitives/patch_kernels.h"
#include "training/features/feature_frame.h"

// The gray ranges of all patches are found once: 220 KB a frame.
class PatchFrame {
 public:
  explicit PatchFrame(const FeatureFrame& frame);

  std::array<float, 80> points;

  // The inputs of a network at position (x, y), 0 .. 255, as the search makes them but for the sharing of ranges by
  // the two first rows and columns.
  void read(int x, int y, float* inputs) const;

 private:
  std::vector<std::uint8_t> picture_;  // with black around, rows of kRangePictureStep
  std::vector<std::uint8_t> low_;
  std::vector<std::uint8_t> high_;
};

// Of the frames with these indices.
std::vector<PatchFrame> preparePatchFrames(const std::vector<FeatureFrame>& frames,
                                           const std::vector<std::size_t>& chosen, unsigned threads);
