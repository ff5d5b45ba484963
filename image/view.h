// A rectangle of an image, read in place.
#pragma once

#include "image/TIppiImage.h"

// Shows the pixels of `image` from (x1, y1) to (x2, y2), picture coordinates, both inclusive and inside the image,
// without copying them. Only to be read from, and not longer than the image keeps its buffer.
class TImageView : public TIppiImage {
 public:
  TImageView(const TIppiImage& image, int x1, int y1, int x2, int y2);
  ~TImageView() override;

  // Whether the rectangle is not empty and lies inside the image.
  static bool Fits(const TIppiImage& image, int x1, int y1, int x2, int y2);
};
