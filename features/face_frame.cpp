#include "features/face_frame.h"

#include <algorithm>

#include "features/TGrid.h"
#include "image/to_int.h"

namespace {

// One axis of a box or frame. 64 bits, since sums and differences of any two ints have to fit.
struct TSpan {
  long long low = 10000;
  long long high = 0;

  long long Length() const { return high - low; }

  void Add(float coordinate) {
    const int whole = TruncateToInt(static_cast<double>(coordinate));
    if (coordinate <= static_cast<float>(low)) low = whole;
    if (coordinate > static_cast<float>(high)) high = whole;
  }

  // Makes it `factor` times as long about its middle; every result is truncated, the middle too.
  void Extend(double factor) {
    const double length = static_cast<double>(Length());
    const int middle = TruncateToInt(0.5 * length + static_cast<double>(low));
    const double extended = factor * length;
    low = TruncateToInt(middle - 0.5 * extended);
    high = TruncateToInt(middle + 0.5 * extended);
  }

  // Grows to `length` on both sides. An odd pixel goes to the high end, unless that is at the image's last pixel.
  void GrowTo(long long length, int imageSide) {
    const long long missing = length - Length();
    if (missing <= 0) return;
    low -= missing / 2;
    high += missing / 2;
    if (missing % 2 == 0) return;
    if (high < imageSide - 1LL) {
      ++high;
    } else {
      --low;
    }
  }

  void Move(long long distance) {
    low += distance;
    high += distance;
  }

  // Into the image if it fits; what is too long ends at the last pixel.
  void MoveInside(int imageSide) {
    if (low < 0) Move(-low);
    if (high >= imageSide) Move(imageSide - 1LL - high);
  }
};

struct TFrame {
  TSpan x;
  TSpan y;

  void Store(int* x1, int* y1, int* x2, int* y2) const {
    *x1 = TruncateToInt(static_cast<double>(x.low));
    *y1 = TruncateToInt(static_cast<double>(y.low));
    *x2 = TruncateToInt(static_cast<double>(x.high));
    *y2 = TruncateToInt(static_cast<double>(y.high));
  }
};

constexpr double kWidthFactor = 1.5;  // of the frame by the box
constexpr double kHeightFactor = 1.2;

TFrame boxOf(const TGrid& grid) {
  TFrame box;
  for (const TSPoint& node : grid.Nodes) {
    box.x.Add(node.x);
    box.y.Add(node.y);
  }
  return box;
}

// Extends what of the box lies in the image (whose far edge counts as one more pixel here) and cuts the result.
void extendInside(TSpan& span, double factor, int imageSide) {
  span.low = std::max(span.low, 0LL);
  span.high = std::min<long long>(span.high, imageSide);
  span.Extend(factor);
  span.low = std::max(span.low, 0LL);
  span.high = std::min(span.high, imageSide - 1LL);
}

}  // namespace

int CalculateFaceFramePositionNB(const TGrid& grid, int* x1, int* y1, int* x2, int* y2, int width, int height) {
  TFrame frame = boxOf(grid);
  frame.x.Extend(kWidthFactor);
  frame.y.Extend(kHeightFactor);
  frame.x.GrowTo(frame.y.Length(), width);
  frame.y.GrowTo(frame.x.Length(), height);
  frame.Store(x1, y1, x2, y2);
  return 0;
}

int CalculateFaceFramePosition(const TGrid& grid, int* x1, int* y1, int* x2, int* y2, int width, int height) {
  TFrame frame = boxOf(grid);
  extendInside(frame.x, kWidthFactor, width);
  extendInside(frame.y, kHeightFactor, height);
  frame.x.GrowTo(frame.y.Length(), width);
  frame.x.MoveInside(width);
  frame.y.GrowTo(frame.x.Length(), height);
  frame.y.MoveInside(height);
  // Wider than the image: half of what hangs out on the left goes to the right.
  if (frame.x.low < 0) frame.x.Move(-frame.x.low / 2);
  frame.Store(x1, y1, x2, y2);
  return 0;
}

void CalcGridSize(const TGrid& grid, int* width, int* height) {
  const TFrame box = boxOf(grid);
  *width = TruncateToInt(static_cast<double>(box.x.Length()));
  *height = TruncateToInt(static_cast<double>(box.y.Length()));
}
