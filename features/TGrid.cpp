#include "features/TGrid.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "image/to_int.h"

namespace {

float intoImage(float coordinate, int side) {
  return std::max(std::min(coordinate, static_cast<float>(side - 1)), 0.0f);
}

// The box of FindCenter along one axis. The starting values are part of the results: a node beyond them on the
// other side does not move that end of the box.
struct TExtent {
  long long min = 10000;
  long long max = -10000;

  void Add(float coordinate) {
    const int whole = TruncateToInt(static_cast<double>(coordinate));
    min = std::min<long long>(min, whole);
    max = std::max<long long>(max, whole);
  }
  int Middle() const { return static_cast<int>((max - min) / 2 + min); }
};

}  // namespace

void TGrid::Assign(TGrid source) { Nodes = std::move(source.Nodes); }

void TGrid::Shift(float dx, float dy) {
  for (TSPoint& node : Nodes) node = {node.x + dx, node.y + dy};
}

void TGrid::Scale(float factor) {
  for (TSPoint& node : Nodes) node = {node.x * factor, node.y * factor};
}

void TGrid::Scale(float sx, float sy, float cx, float cy) {
  for (TSPoint& node : Nodes) node = {(node.x - cx) * sx + cx, (node.y - cy) * sy + cy};
}

// The offsets are floats and the rest is double: results are compared to the bit.
void TGrid::RotateNB(int cx, int cy, float angle) {
  const double cosine = std::cos(static_cast<double>(angle));
  const double sine = std::sin(static_cast<double>(angle));
  for (TSPoint& node : Nodes) {
    const double dx = static_cast<double>(node.x - static_cast<float>(cx));
    const double dy = static_cast<double>(node.y - static_cast<float>(cy));
    node = {static_cast<float>(cosine * dx - sine * dy + cx), static_cast<float>(sine * dx + cosine * dy + cy)};
  }
}

void TGrid::Rotate(int cx, int cy, int width, int height, float angle) {
  RotateNB(cx, cy, angle);
  for (TSPoint& node : Nodes) node = {intoImage(node.x, width), intoImage(node.y, height)};
}

void TGrid::Rotate(int width, int height, float angle) {
  int cx, cy;
  FindCenter(&cx, &cy);
  Rotate(cx, cy, width, height, angle);
}

void TGrid::FindCenter(int* cx, int* cy) const {
  TExtent x, y;
  for (const TSPoint& node : Nodes) {
    x.Add(node.x);
    y.Add(node.y);
  }
  *cx = x.Middle();
  *cy = y.Middle();
}
