// What the two resize algorithms share; internal to the primitives.
#pragma once

#include <cstddef>

#include "primitives/ippdefs.h"

// A checked resize: `src` is the first pixel of the effective source region, sizes are effective sizes in
// pixels, steps are in bytes. Destination pixel (i, j) looks at source point (i / xFactor, j / yFactor).
template <class T>
struct ResizeJob {
  const T* src;
  std::ptrdiff_t srcStep;
  IppiSize srcSize;
  T* dst;
  std::ptrdiff_t dstStep;
  IppiSize dstSize;
  double xFactor;
  double yFactor;
  int channels;

  const T* srcRow(int y) const { return reinterpret_cast<const T*>(reinterpret_cast<const char*>(src) + y * srcStep); }
  T* dstRow(int y) const { return reinterpret_cast<T*>(reinterpret_cast<char*>(dst) + y * dstStep); }
};

// Each destination pixel is the mean of its footprint of 1 / factor pixels; the 8u form rounds half up.
void resizeArea(const ResizeJob<Ipp8u>& job);
void resizeArea(const ResizeJob<Ipp32f>& job);

// Lanczos kernel of three lobes, six taps an axis, rows then columns.
void resizeLanczos(const ResizeJob<Ipp8u>& job);
void resizeLanczos(const ResizeJob<Ipp32f>& job);
