// The separable Gaussian filter. Columns are made in tiles so narrow that the row results which one output needs
// stay in the processor's second cache, whatever the sizes of image and kernel.
#include <algorithm>
#include <climits>
#include <cmath>
#include <cstring>

#include "primitives/ippi.h"
#include "primitives/kernels.h"
#include "primitives/rows.h"

namespace {

// Row results kept at a time. Second caches have 256 KiB or more, and source and destination pass through too.
constexpr std::int64_t kRingBytes = 192 * 1024;
constexpr std::int64_t kTileUnit = 64;  // floats; what the row kernel makes in one go
// One cache line between rows, so that rows do not all compete for the same places of the cache.
constexpr std::int64_t kRowGap = 16;  // floats
constexpr std::int64_t kAlignment = 64;

std::int64_t aligned(std::int64_t bytes) { return (bytes + kAlignment - 1) / kAlignment * kAlignment; }

// How the work is cut and where its parts lie in the work buffer.
struct Plan {
  std::int64_t tile;       // columns made at once
  std::int64_t ringRows;   // row results kept: what kGaussOutputs outputs need
  std::int64_t ringWidth;  // floats from row to row
  std::int64_t tableRows;  // rows of the image and those beyond it that the kernel reaches

  std::int64_t weights, segment, table, ring, total;  // bytes from the start of the buffer

  Plan(IppiSize roi, std::int64_t kernelSize) {
    ringRows = std::min<std::int64_t>(kernelSize + kGaussOutputs - 1, roi.height);
    tableRows = roi.height + kernelSize - 1;
    tile = std::max(kRingBytes / (ringRows * 4) / kTileUnit, std::int64_t{1}) * kTileUnit;
    // Tiles of about one width.
    const std::int64_t tiles = (roi.width + tile - 1) / tile;
    tile = (roi.width + tiles * kTileUnit - 1) / (tiles * kTileUnit) * kTileUnit;
    ringWidth = tile + kRowGap;
    weights = 0;
    segment = weights + aligned(kernelSize * 4);
    table = segment + aligned((tile + kernelSize - 1) * 4);
    ring = table + aligned(tableRows * static_cast<std::int64_t>(sizeof(Ipp32f*)));
    total = ring + ringRows * ringWidth * 4 + kAlignment;
  }
};

bool isKernelSize(int size) { return size >= 3 && size % 2 == 1; }

// Weights exp(-d^2 / (2 sigma^2)) whose sum is 1, for distances d from the middle.
bool makeWeights(Ipp32f* weights, int size, Ipp32f sigma) {
  const float denominator = (sigma + sigma) * sigma;
  if (!(sigma > 0.0F) || !(denominator > 0.0F) || !std::isfinite(sigma)) return false;
  float sum = 0.0F;
  for (int i = 0; i < size; ++i) {
    const std::int64_t distance = i - size / 2;
    const float exponent = static_cast<float>(-(distance * distance)) / denominator;
    weights[i] = static_cast<float>(std::exp(static_cast<double>(exponent)));
    sum += weights[i];
  }
  for (int i = 0; i < size; ++i) weights[i] /= sum;
  return true;
}

class GaussFilter {
 public:
  GaussFilter(const Ipp32f* src, int srcStep, Ipp32f* dst, int dstStep, IppiSize roi, int kernelSize, Ipp8u* buffer)
      : src_(src),
        srcStep_(srcStep),
        dst_(dst),
        dstStep_(dstStep),
        roi_(roi),
        taps_(kernelSize),
        plan_(roi, kernelSize),
        weights_(reinterpret_cast<Ipp32f*>(buffer + plan_.weights)),
        segment_(reinterpret_cast<Ipp32f*>(buffer + plan_.segment)),
        table_(reinterpret_cast<const Ipp32f**>(buffer + plan_.table)),
        ring_(reinterpret_cast<Ipp32f*>(buffer + plan_.ring)) {}

  Ipp32f* weights() const { return weights_; }

  void Run() {
    for (std::int64_t j = 0; j < plan_.tableRows; ++j) {
      table_[j] = ringRow(std::clamp<std::int64_t>(j - taps_ / 2, 0, roi_.height - 1));
    }
    for (std::int64_t x = 0; x < roi_.width; x += plan_.tile) {
      RunTile(static_cast<int>(x), static_cast<int>(std::min<std::int64_t>(plan_.tile, roi_.width - x)));
    }
  }

 private:
  Ipp32f* ringRow(std::int64_t row) const { return ring_ + row % plan_.ringRows * plan_.ringWidth; }

  void RunTile(int x, int count) const {
    int made = 0;
    for (int y = 0; y < roi_.height; y += kGaussOutputs) {
      const int outputs = std::min(kGaussOutputs, roi_.height - y);
      const int needed = std::min(y + outputs + taps_ / 2, roi_.height);
      for (; made < needed; ++made) FilterRow(made, x, count);
      kernels().overlay.gaussColumns(table_ + y, weights_, taps_, rowAt(dst_, dstStep_, y) + x, dstStep_, outputs,
                                     count);
    }
  }

  // Only the columns near the ends of the row go through the segment.
  void FilterRow(int y, int x, int count) const {
    const Ipp32f* row = rowAt(src_, srcStep_, y);
    const int reach = taps_ / 2, end = x + count;
    const int left = std::clamp(reach, x, end), right = std::clamp(roi_.width - reach, left, end);
    Ipp32f* result = ringRow(y);
    if (left > x) Convolve(padded(row, x, left - x), result, left - x);
    if (right > left) Convolve(row + (left - reach), result + (left - x), right - left);
    if (end > right) Convolve(padded(row, right, end - right), result + (right - x), end - right);
  }

  void Convolve(const Ipp32f* from, Ipp32f* to, int count) const {
    kernels().overlay.gaussRow(from, weights_, taps_, to, count);
  }

  // The pixels that the kernel reaches from `count` columns on from x.
  const Ipp32f* padded(const Ipp32f* row, int x, int count) const {
    const int reach = taps_ / 2, length = count + taps_ - 1;
    const int before = std::clamp(reach - x, 0, length);
    const int first = std::max(x - reach, 0);
    const int inside = std::min(length - before, roi_.width - first);
    std::fill_n(segment_, before, row[0]);
    std::memcpy(segment_ + before, row + first, static_cast<std::size_t>(inside) * sizeof(Ipp32f));
    std::fill(segment_ + before + inside, segment_ + length, row[roi_.width - 1]);
    return segment_;
  }

  const Ipp32f* src_;
  int srcStep_;
  Ipp32f* dst_;
  int dstStep_;
  IppiSize roi_;
  int taps_;
  Plan plan_;
  Ipp32f* weights_;
  Ipp32f* segment_;       // one row with what counts beyond its ends
  const Ipp32f** table_;  // where the result of a row stands, from row -taps / 2 on
  Ipp32f* ring_;
};

Ipp8u* alignedStart(Ipp8u* buffer) {
  const auto address = reinterpret_cast<std::uintptr_t>(buffer);
  return buffer + (kAlignment - address % kAlignment) % kAlignment;
}

bool stepHolds(int step, IppiSize roi) { return step >= std::int64_t{roi.width} * 4; }

}  // namespace

IppStatus ippiFilterGaussGetBufferSize_32f_C1R(IppiSize roi, int kernelSize, int* bufferSize) {
  if (const IppStatus status = checkRegion(roi, bufferSize)) return status;
  if (!isKernelSize(kernelSize)) return ippStsBadArgErr;
  const std::int64_t total = Plan(roi, kernelSize).total;
  if (total > INT_MAX) return ippStsSizeErr;
  *bufferSize = static_cast<int>(total);
  return ippStsNoErr;
}

IppStatus ippiFilterGaussBorder_32f_C1R(const Ipp32f* src, int srcStep, Ipp32f* dst, int dstStep, IppiSize roi,
                                        int kernelSize, Ipp32f sigma, int /*borderType*/, Ipp32f /*borderValue*/,
                                        Ipp8u* buffer) {
  if (const IppStatus status = checkRegion(roi, src, dst, buffer)) return status;
  if (!stepHolds(srcStep, roi) || !stepHolds(dstStep, roi)) return ippStsStepErr;
  int bufferSize;
  if (const IppStatus status = ippiFilterGaussGetBufferSize_32f_C1R(roi, kernelSize, &bufferSize)) return status;
  GaussFilter filter(src, srcStep, dst, dstStep, roi, kernelSize, alignedStart(buffer));
  if (!makeWeights(filter.weights(), kernelSize, sigma)) return ippStsBadArgErr;
  filter.Run();
  return ippStsNoErr;
}
