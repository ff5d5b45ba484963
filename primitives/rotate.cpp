// Rotation by inverse mapping. Positions advance in 64-bit fixed point, exactly linear along a row, so the part
// of a row that needs no bounds checks is found by division and every level takes the same steps.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numbers>

#include "primitives/ippi.h"
#include "primitives/kernels.h"
#include "primitives/region.h"

namespace {

constexpr int kBandRows = 64;
constexpr int kTileColumns = 64;
constexpr std::int64_t kPixel = std::int64_t{1} << 32;
// Rounds positions to the fraction that the weights keep.
constexpr std::int64_t kHalfWeight = std::int64_t{1} << (31 - kRotateWeightBits);

// Source (x, y) lands at (x cos + y sin + xShift, -x sin + y cos + yShift).
struct Turn {
  double cosine;
  double sine;
  double xShift;
  double yShift;
};

Turn makeTurn(double angle, double xCenter, double yCenter) {
  angle = std::fmod(angle, 360.0);
  if (angle < 0.0) angle += 360.0;
  Turn turn{};
  if (angle == 0.0 || angle == 360.0) {
    turn = {1.0, 0.0, 0.0, 0.0};
  } else if (angle == 90.0) {
    turn = {0.0, 1.0, 0.0, 0.0};
  } else if (angle == 180.0) {
    turn = {-1.0, 0.0, 0.0, 0.0};
  } else if (angle == 270.0) {
    turn = {0.0, -1.0, 0.0, 0.0};
  } else {
    const double radians = angle * (std::numbers::pi / 180.0);
    turn = {std::cos(radians), std::sin(radians), 0.0, 0.0};
  }
  turn.xShift = xCenter - xCenter * turn.cosine - yCenter * turn.sine;
  turn.yShift = yCenter - yCenter * turn.cosine + xCenter * turn.sine;
  return turn;
}

std::int64_t toFixed(double pixels) { return std::llrint(pixels * static_cast<double>(kPixel)); }

// Steps i with begin <= i < end.
struct Range {
  std::int64_t begin;
  std::int64_t end;
};

std::int64_t floorDivide(std::int64_t a, std::int64_t b) {
  const std::int64_t quotient = a / b;
  return a % b != 0 && (a < 0) != (b < 0) ? quotient - 1 : quotient;
}

// The steps of `range` with low <= from + i * move < high; an empty result still lies within `range`.
Range clip(Range range, std::int64_t from, std::int64_t move, std::int64_t low, std::int64_t high) {
  if (move < 0) return clip(range, -from, -move, 1 - high, 1 - low);
  if (move == 0) return from >= low && from < high ? range : Range{range.begin, range.begin};
  const std::int64_t begin = std::clamp(floorDivide(low - from - 1, move) + 1, range.begin, range.end);
  return {begin, std::clamp(floorDivide(high - from - 1, move) + 1, begin, range.end)};
}

// The part of `range` inside `bounds`; an empty result still lies within `bounds`.
Range common(Range range, Range bounds) {
  const std::int64_t begin = std::clamp(range.begin, bounds.begin, bounds.end);
  return {begin, std::clamp(range.end, begin, bounds.end)};
}

// Destination pixels that the source reaches, and those among them whose neighbours all lie inside it.
struct RowPlan {
  FixedPoint from;
  Range outer;
  Range inner;
};

class Rotator {
 public:
  Rotator(const Ipp8u* src, std::ptrdiff_t srcStep, IppiRect roi, int channels, const Turn& turn, bool smooth)
      : src_(src),
        step_(srcStep),
        roi_(roi),
        channels_(channels),
        turn_(turn),
        smooth_(smooth),
        move_{toFixed(turn.cosine), toFixed(turn.sine)} {
    // Kernels address a source with 32-bit offsets; the portable one takes any.
    const bool near = std::abs(step_) * roi.height < INT32_MAX;
    span_ = (near ? kernels() : *kernelsOf(CpuLevel::base)).resample.rotateSpan[resampleChannelIndex(channels)];
  }

  // What row `y` of the destination needs, from its column `x` on.
  RowPlan plan(int x, int y, int pixels) const {
    RowPlan plan{};
    if (!rowStart(x, y, plan.from)) return plan;
    const FixedPoint from = plan.from;
    const std::int64_t width = roi_.width * kPixel, height = roi_.height * kPixel;
    // Without smoothing the outermost positions are those of the edge pixels themselves.
    const std::int64_t low = smooth_ ? -kPixel : 0, cut = smooth_ ? 0 : kPixel - 2 * kHalfWeight;
    plan.outer = clip({0, pixels}, from.x, move_.x, low, width - cut);
    plan.outer = clip(plan.outer, from.y, move_.y, low, height - cut);
    // The kernels read a few bytes beyond the right neighbour.
    const int beyond = channels_ == 1 ? 3 : channels_ == 3 ? 2 : 1;
    plan.inner = clip(plan.outer, from.x, move_.x, 0, std::max<std::int64_t>(0, width - beyond * kPixel));
    plan.inner = clip(plan.inner, from.y, move_.y, 0, height - kPixel);
    return plan;
  }

  // The part of a row inside `tile`; `out` is the row's first pixel.
  void run(const RowPlan& plan, Range tile, Ipp8u* out) const {
    const Range outer = common(plan.outer, tile), inner = common(plan.inner, outer);
    edge(out, plan.from, outer.begin, inner.begin);
    if (inner.end > inner.begin) {
      span_(src_, step_, at(plan.from, inner.begin), move_, out + inner.begin * channels_,
            static_cast<int>(inner.end - inner.begin));
    }
    edge(out, plan.from, inner.end, outer.end);
  }

 private:
  // The source position of a destination pixel; false where the whole row is too far away to meet the source.
  bool rowStart(int x, int y, FixedPoint& from) const {
    const double across = x - turn_.xShift, down = y - turn_.yShift;
    const double sourceX = across * turn_.cosine - down * turn_.sine - roi_.x;
    const double sourceY = across * turn_.sine + down * turn_.cosine - roi_.y;
    constexpr double kFar = 4.0 * kMaxSide;
    if (!(std::abs(sourceX) < kFar && std::abs(sourceY) < kFar)) return false;
    from = {toFixed(sourceX) + kHalfWeight, toFixed(sourceY) + kHalfWeight};
    return true;
  }

  FixedPoint at(FixedPoint from, std::int64_t i) const { return {from.x + i * move_.x, from.y + i * move_.y}; }

  void edge(Ipp8u* out, FixedPoint from, std::int64_t begin, std::int64_t end) const {
    for (std::int64_t i = begin; i < end; ++i) edgePixel(out + i * channels_, at(from, i));
  }

  // Neighbours outside the source are replaced by the old content of the destination pixel.
  void edgePixel(Ipp8u* out, FixedPoint at) const {
    const Ipp8u* neighbours[4];
    const auto x = static_cast<int>(at.x >> 32), y = static_cast<int>(at.y >> 32);
    for (int k = 0; k < 4; ++k) {
      const int nx = x + k % 2, ny = y + k / 2;
      const bool inside = nx >= 0 && ny >= 0 && nx < roi_.width && ny < roi_.height;
      neighbours[k] = inside ? src_ + ny * step_ + static_cast<std::ptrdiff_t>(nx) * channels_ : out;
    }
    constexpr int kOne = 1 << kRotateWeightBits;
    const int fx = static_cast<int>(static_cast<std::uint32_t>(at.x) >> (32 - kRotateWeightBits));
    const int fy = static_cast<int>(static_cast<std::uint32_t>(at.y) >> (32 - kRotateWeightBits));
    for (int c = 0; c < channels_; ++c) {
      const int upper = (neighbours[0][c] * (kOne - fx) + neighbours[1][c] * fx) >> 7;
      const int lower = (neighbours[2][c] * (kOne - fx) + neighbours[3][c] * fx) >> 7;
      out[c] = static_cast<Ipp8u>((upper * (kOne - fy) + lower * fy + (1 << 20)) >> 21);
    }
  }

  const Ipp8u* src_;
  std::ptrdiff_t step_;
  IppiRect roi_;
  int channels_;
  Turn turn_;
  bool smooth_;
  FixedPoint move_;
  void (*span_)(const Ipp8u*, std::ptrdiff_t, FixedPoint, FixedPoint, Ipp8u*, int);
};

// Rows from `top` of the region on, tile by tile: a slanted line through a large source touches a page a row,
// and a tile keeps the number of these small enough for the caches.
void rotateBand(const Rotator& rotator, Ipp8u* out, std::ptrdiff_t step, IppiRect roi, int top) {
  RowPlan plans[kBandRows];
  const int rows = std::min(kBandRows, roi.height - top);
  for (int r = 0; r < rows; ++r) plans[r] = rotator.plan(roi.x, roi.y + top + r, roi.width);
  for (int x = 0; x < roi.width; x += kTileColumns) {
    const Range tile{x, std::min(x + kTileColumns, roi.width)};
    for (int r = 0; r < rows; ++r) rotator.run(plans[r], tile, out + r * step);
  }
}

IppStatus rotate(int channels, const Ipp8u* src, IppiSize srcSize, int srcStep, IppiRect srcRoi, Ipp8u* dst,
                 int dstStep, IppiRect dstRoi, double angle, double xCenter, double yCenter, unsigned interpolation) {
  if (src == nullptr || dst == nullptr) return ippStsNullPtrErr;
  if (std::min({srcSize.width, srcSize.height, srcRoi.width, srcRoi.height, dstRoi.width, dstRoi.height}) < 1) {
    return ippStsSizeErr;
  }
  // A negative place in the destination would lie before its buffer.
  if (dstRoi.x < 0 || dstRoi.y < 0 || !clipRegion(srcSize, srcRoi)) return ippStsSizeErr;
  if (std::max({srcRoi.width, srcRoi.height, dstRoi.width, dstRoi.height}) > kMaxSide) return ippStsSizeErr;
  if (std::max(dstRoi.x, dstRoi.y) > kMaxSide) return ippStsSizeErr;
  if (!std::isfinite(angle) || !std::isfinite(xCenter) || !std::isfinite(yCenter)) return ippStsBadArgErr;

  const Ipp8u* first = src + static_cast<std::ptrdiff_t>(srcRoi.y) * srcStep + std::ptrdiff_t{srcRoi.x} * channels;
  const bool smooth = (interpolation & IPPI_SMOOTH_EDGE) != 0;
  const Rotator rotator(first, srcStep, srcRoi, channels, makeTurn(angle, xCenter, yCenter), smooth);
  dst += static_cast<std::ptrdiff_t>(dstRoi.y) * dstStep + std::ptrdiff_t{dstRoi.x} * channels;
  for (int j = 0; j < dstRoi.height; j += kBandRows) {
    rotateBand(rotator, dst + static_cast<std::ptrdiff_t>(j) * dstStep, dstStep, dstRoi, j);
  }
  return ippStsNoErr;
}

}  // namespace

IppStatus ippiRotateCenter_8u_C1R(const Ipp8u* src, IppiSize srcSize, int srcStep, IppiRect srcRoi, Ipp8u* dst,
                                  int dstStep, IppiRect dstRoi, double angle, double xCenter, double yCenter,
                                  unsigned interpolation) {
  return rotate(1, src, srcSize, srcStep, srcRoi, dst, dstStep, dstRoi, angle, xCenter, yCenter, interpolation);
}

IppStatus ippiRotateCenter_8u_C3R(const Ipp8u* src, IppiSize srcSize, int srcStep, IppiRect srcRoi, Ipp8u* dst,
                                  int dstStep, IppiRect dstRoi, double angle, double xCenter, double yCenter,
                                  unsigned interpolation) {
  return rotate(3, src, srcSize, srcStep, srcRoi, dst, dstStep, dstRoi, angle, xCenter, yCenter, interpolation);
}

IppStatus ippiRotateCenter_8u_C4R(const Ipp8u* src, IppiSize srcSize, int srcStep, IppiRect srcRoi, Ipp8u* dst,
                                  int dstStep, IppiRect dstRoi, double angle, double xCenter, double yCenter,
                                  unsigned interpolation) {
  return rotate(4, src, srcSize, srcStep, srcRoi, dst, dstStep, dstRoi, angle, xCenter, yCenter, interpolation);
}
