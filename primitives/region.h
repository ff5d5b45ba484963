// Checks that the resampling primitives share; internal to the primitives.
#pragma once

#include <algorithm>
#include <cstdint>

#include "primitives/ippdefs.h"

// The largest side of an image; sums and positions are sized for it.
constexpr int kMaxSide = 65535;

// Intersects the region with the image; false where nothing is left.
inline bool clipRegion(IppiSize size, IppiRect& roi) {
  const std::int64_t right = std::min<std::int64_t>(size.width, std::int64_t{roi.x} + roi.width);
  const std::int64_t bottom = std::min<std::int64_t>(size.height, std::int64_t{roi.y} + roi.height);
  roi.x = std::max(roi.x, 0);
  roi.y = std::max(roi.y, 0);
  if (right <= roi.x || bottom <= roi.y) return false;
  roi.width = static_cast<int>(right - roi.x);
  roi.height = static_cast<int>(bottom - roi.y);
  return true;
}
