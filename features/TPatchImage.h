// The face as the networks look at it.
#pragma once

#include <cstddef>
#include <memory>

#include "features/patch.h"
#include "image/TIppiImage.h"
#include "primitives/patch_kernels.h"

// A frame of 256 by 256 pixels, top row first, with so much black around it that the patch of every position lies in
// memory as it is. A patch has 16 pixels before its position and 15 after it on each axis.
class TPatchImage {
 public:
  static constexpr int kSide = kRangeSide;
  static constexpr int kBefore = kPatchSide / 2;
  static constexpr int kStep = kRangePictureStep;

  // Takes a gray face of at most 256 by 256 pixels and finds the gray ranges of all patches, in less time than the
  // search would need for those that it visits. The face lies at the frame's left and bottom edge: the search reads
  // rows counted from the bottom of a frame 256 rows high.
  void Assign(const TIppiImage& face);

  // The patch whose first pixel is (left, top), -16 .. 239 each; the next row is kStep bytes further on.
  const unsigned char* Patch(int left, int top) const {
    return pixels_.get() + (top + kBefore) * kStep + left + kBefore;
  }

  // Ranges are kept by the patch's centre, halved with truncation, so the two first columns of positions share
  // theirs, and so do the two first rows: the range of the one that is asked for first holds for all.
  TPatchRange Range(int left, int top) {
    const int x = left + kBefore, y = top + kBefore;
    if (x < 2 || y < 2) Share(x, y);
    const std::size_t at = At(x, y);
    return {low_[at], high_[at]};
  }

 private:
  static std::size_t At(int x, int y) { return static_cast<std::size_t>(y * kSide + x); }
  void Allocate();
  void Share(int x, int y);

  std::unique_ptr<unsigned char[]> pixels_;
  std::unique_ptr<unsigned char[]> low_;  // by position, row by row
  std::unique_ptr<unsigned char[]> high_;
  std::unique_ptr<unsigned char[]> work_;
  bool shared_[2][kSide];  // by the larger coordinate: x < 2, or else y < 2
};
