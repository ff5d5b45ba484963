#include "training/evaluation/point_errors.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>
#include <utility>

namespace evaluation {

namespace {

NodeGroup allNodes() {
  NodeGroup nodes(40);
  std::iota(nodes.begin(), nodes.end(), std::size_t{0});
  return nodes;
}

double meanSecond(const std::pair<float, double>* points, std::size_t count) {
  double sum = 0;
  for (std::size_t i = 0; i < count; ++i) sum += points[i].second;
  return count > 0 ? sum / static_cast<double>(count) : 0;
}

}  // namespace

const NodeGroup kAllNodes = allNodes();
const NodeGroup kPupils = {0, 1};
const NodeGroup kInnerNodes = {0,  1,  2,  3,  4,  16, 17, 18, 19, 20, 21, 22,
                               23, 24, 25, 26, 27, 28, 34, 35, 36, 37, 38, 39};
const NodeGroup kOutlineNodes = {10, 11, 12, 13, 14, 15, 29, 30, 31, 32, 33};
const NodeGroup kForeheadNodes = {5, 6, 7, 8, 9};

FacePoints turnedPoints(const FacePoints& points, const LabelledPoint& about, double degrees) {
  const double c = std::cos(degrees * std::numbers::pi / 180), s = std::sin(degrees * std::numbers::pi / 180);
  FacePoints turned = points;
  for (LabelledPoint& point : turned) {
    const double dx = point.x - about.x, dy = point.y - about.y;
    point = {about.x + c * dx - s * dy, about.y + s * dx + c * dy};
  }
  return turned;
}

LabelledPoint offsetOf(const FoundPoints& face, std::size_t node) {
  const double distance = std::hypot(face.truth[1].x - face.truth[0].x, face.truth[1].y - face.truth[0].y);
  return {(face.found[node].x - face.truth[node].x) / distance, (face.found[node].y - face.truth[node].y) / distance};
}

double errorOf(const FoundPoints& face, std::size_t node) {
  const LabelledPoint offset = offsetOf(face, node);
  return std::hypot(offset.x, offset.y);
}

double meanErrorOf(const FoundPoints& face, const NodeGroup& nodes) {
  double sum = 0;
  for (const std::size_t node : nodes) sum += errorOf(face, node);
  return sum / static_cast<double>(nodes.size());
}

double PointTally::meanError(const NodeGroup& nodes) const {
  double sum = 0;
  for (const FoundPoints& face : faces_) sum += meanErrorOf(face, nodes);
  return faces_.empty() ? 0 : sum / static_cast<double>(faces_.size());
}

LabelledPoint PointTally::meanOffset(std::size_t node) const {
  LabelledPoint sum{};
  for (const FoundPoints& face : faces_) {
    const LabelledPoint offset = offsetOf(face, node);
    sum.x += offset.x;
    sum.y += offset.y;
  }
  const double count = std::max(1.0, static_cast<double>(faces_.size()));
  return {sum.x / count, sum.y / count};
}

double PointTally::shareAbove(double limit, const NodeGroup& nodes) const {
  const auto count = std::count_if(faces_.begin(), faces_.end(),
                                   [&](const FoundPoints& face) { return meanErrorOf(face, nodes) > limit; });
  return faces_.empty() ? 0 : static_cast<double>(count) / static_cast<double>(faces_.size());
}

PointTally::Tenths PointTally::tenthsByConfidence(const NodeGroup& nodes) const {
  std::vector<std::pair<float, double>> points;
  for (const FoundPoints& face : faces_) {
    for (const std::size_t node : nodes) points.emplace_back(face.confidence[node], errorOf(face, node));
  }
  std::sort(points.begin(), points.end());
  const std::size_t tenth = points.size() / 10;
  return {meanSecond(points.data(), tenth), meanSecond(points.data() + points.size() - tenth, tenth)};
}

}  // namespace evaluation
