#include <algorithm>
#include <array>

#include "primitives/ippi.h"
#include "primitives/rows.h"

namespace {

constexpr int kValues = 256;
using Counts = std::array<std::uint32_t, kValues>;

// Runs of one value would wait for their own counter; four sets of counters let them overlap.
Counts countValues(const Ipp8u* src, int step, IppiSize roi) {
  Counts counts[4] = {};
  for (int y = 0; y < roi.height; ++y) {
    const Ipp8u* row = rowAt(src, step, y);
    int x = 0;
    for (; x + 4 <= roi.width; x += 4) {
      for (int k = 0; k < 4; ++k) ++counts[k][row[x + k]];
    }
    for (; x < roi.width; ++x) ++counts[0][row[x]];
  }
  for (int k = 1; k < 4; ++k) {
    for (std::size_t v = 0; v < kValues; ++v) counts[0][v] += counts[k][v];
  }
  return counts[0];
}

std::uint32_t countBetween(const Counts& counts, Ipp32s from, Ipp32s to) {
  std::uint32_t sum = 0;
  for (int v = std::clamp(from, 0, kValues); v < std::clamp(to, 0, kValues); ++v) {
    sum += counts[static_cast<std::size_t>(v)];
  }
  return sum;
}

}  // namespace

IppStatus ippiHistogramEven_8u_C1R(const Ipp8u* src, int srcStep, IppiSize roi, Ipp32s* histogram, Ipp32s* levels,
                                   int levelCount, Ipp32s lower, Ipp32s upper) {
  if (const IppStatus status = checkRegion(roi, src, histogram, levels)) return status;
  if (levelCount < 2 || lower >= upper) return ippStsBadArgErr;
  const std::int64_t bins = levelCount - 1, range = std::int64_t{upper} - lower;
  for (std::int64_t i = 0; i <= bins; ++i) levels[i] = static_cast<Ipp32s>(lower + i * range / bins);
  const Counts counts = countValues(src, srcStep, roi);
  for (std::int64_t i = 0; i < bins; ++i) {
    histogram[i] = static_cast<Ipp32s>(countBetween(counts, levels[i], levels[i + 1]));
  }
  return ippStsNoErr;
}
