#include "orientation.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace {

// Square tiles keep the lines of both pictures in the cache while rows become columns.
constexpr int32_t kTile = 32;

// Where the stored pixel lies that comes to column x and row y of the upright picture, as a start and two steps.
struct Walk {
  const unsigned char* origin;
  ptrdiff_t perColumn;
  ptrdiff_t perRow;
};

// For each orientation: do the upright columns run along the stored rows (0) or columns (1), and is the way along
// stored x or y reversed.
struct Turn {
  bool swaps;
  bool reversesX;
  bool reversesY;
};

constexpr Turn kTurns[9] = {{false, false, false}, {false, false, false}, {false, true, false},
                            {false, true, true},   {false, false, true},  {true, false, false},
                            {true, false, true},   {true, true, true},    {true, true, false}};

Walk walkFor(const Turn& turn, const PixelView& stored) {
  const ptrdiff_t alongX = turn.reversesX ? -3 : 3;
  const ptrdiff_t alongY = turn.reversesY ? -stored.step : stored.step;
  const int32_t x = turn.reversesX ? stored.size.width - 1 : 0;
  const int32_t y = turn.reversesY ? stored.size.height - 1 : 0;
  return {stored.row(y) + 3 * ptrdiff_t{x}, turn.swaps ? alongY : alongX, turn.swaps ? alongX : alongY};
}

void copyTile(const Walk& walk, int32_t left, int32_t top, Size size, unsigned char* pixels) {
  const int32_t right = std::min(left + kTile, size.width);
  const int32_t bottom = std::min(top + kTile, size.height);
  for (int32_t y = top; y < bottom; ++y) {
    const unsigned char* from = walk.origin + walk.perRow * y + walk.perColumn * left;
    unsigned char* to = pixels + 3 * (ptrdiff_t{y} * size.width + left);
    // Four bytes at a time are quicker; the next pixel covers the fourth, and the rows of an image have room to read
    // it.
    for (int32_t x = left; x + 1 < right; ++x, from += walk.perColumn, to += 3) std::memcpy(to, from, 4);
    std::memcpy(to, from, 3);
  }
}

}  // namespace

Picture Orientation::upright(Picture stored) const {
  if (isUpright()) return stored;
  const PixelView view = viewOf(stored);
  const Size size = swapsSides() ? Size{view.size.height, view.size.width} : view.size;
  const Walk walk = walkFor(kTurns[value_], view);
  // Kept for the next picture: fresh memory of this size costs as much time as the turn.
  static std::vector<unsigned char> pixels;
  pixels.resize(3 * static_cast<size_t>(size.width) * static_cast<size_t>(size.height));
  for (int32_t top = 0; top < size.height; top += kTile) {
    for (int32_t left = 0; left < size.width; left += kTile) copyTile(walk, left, top, size, pixels.data());
  }
  return Picture::fromPixels(pixels, size);
}

TPoint Orientation::toStored(TPoint point, Size upright) const {
  const Turn& turn = kTurns[value_];
  const Size size = turn.swaps ? Size{upright.height, upright.width} : upright;
  TPoint stored = turn.swaps ? TPoint{point.y, point.x} : point;
  if (turn.reversesX) stored.x = size.width - 1 - stored.x;
  if (turn.reversesY) stored.y = size.height - 1 - stored.y;
  return stored;
}

double Orientation::angleToStored(double angle) const {
  const Turn& turn = kTurns[value_];
  const double radians = angle * std::acos(-1.0) / 180.0;
  // The top of the head lies this way from the face's centre: turning clockwise by the angle takes it to (0, -1).
  double x = -std::sin(radians);
  double y = -std::cos(radians);
  if (turn.swaps) std::swap(x, y);
  if (turn.reversesX) x = -x;
  if (turn.reversesY) y = -y;
  return std::atan2(-x, -y) * 180.0 / std::acos(-1.0);
}
