// The row kernels of the integrals and deviations for single elements: the portable level as a whole and
// the rest of a row for the vector levels. Included by kernel files only; the unnamed namespace keeps each
// file's instructions its own.
#pragma once

#include "primitives/haar_kernels.h"

namespace {

// Columns `first` to `width` - 1 of the source, after row sums of `rowSum` and `rowSqr`.
inline void integrateColumns(const IntegralRow& row, int first, int width, std::int32_t rowSum, double rowSqr) {
  for (int c = first; c < width; c++) {
    const int p = row.src[c];
    rowSum += p;
    rowSqr += p * p;
    row.sum[c + 1] = static_cast<float>(rowSum) + row.above[c + 1];
    row.sqr[c + 1] = row.aboveSqr[c + 1] + rowSqr;
  }
}

inline float deviationAt(const DeviationRows& rows, int x) {
  const int right = x + rows.rectWidth;
  const float mean = (rows.bottom[right] - rows.top[right] - rows.bottom[x] + rows.top[x]) / rows.area;
  const double square = static_cast<double>(mean) * static_cast<double>(mean);
  const double sqr = rows.bottomSqr[right] - rows.topSqr[right] - rows.bottomSqr[x] + rows.topSqr[x];
  const double v = sqr / static_cast<double>(rows.area) - square;
  return __builtin_sqrtf(static_cast<float>(v < 0 ? 0 : v));
}

}  // namespace
