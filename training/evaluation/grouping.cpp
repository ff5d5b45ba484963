#include "training/evaluation/grouping.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <numeric>

#include "detect/TIppiFaceDetector.h"
#include "detect/TMultiFaceDetector.h"
#include "image/params.h"

namespace evaluation {

namespace {

// Hits whose four sides differ by less than this part of the smaller width belong together.
constexpr double kNear = 0.25;

Detection toDetection(double x1, double y1, double x2, double y2) {
  return {(x1 + x2) / 2, (y1 + y2) / 2, (std::abs(x2 - x1) + std::abs(y2 - y1)) / 2, 0};
}

bool near(const TRectangle& a, const TRectangle& b) {
  const double limit = kNear * std::min(a.x2 - a.x1, b.x2 - b.x1);
  return std::abs(a.x1 - b.x1) < limit && std::abs(a.y1 - b.y1) < limit && std::abs(a.x2 - b.x2) < limit &&
         std::abs(a.y2 - b.y2) < limit;
}

std::size_t rootOf(std::vector<std::size_t>& parent, std::size_t i) {
  while (parent[i] != i) i = parent[i] = parent[parent[i]];
  return i;
}

std::vector<std::size_t> connectedHits(const std::vector<TRectangle>& hits) {
  std::vector<std::size_t> parent(hits.size());
  std::iota(parent.begin(), parent.end(), std::size_t{0});
  for (std::size_t i = 0; i < hits.size(); ++i) {
    for (std::size_t j = 0; j < i; ++j) {
      if (near(hits[i], hits[j])) parent[rootOf(parent, i)] = rootOf(parent, j);
    }
  }
  for (std::size_t i = 0; i < hits.size(); ++i) parent[i] = rootOf(parent, i);
  return parent;
}

HitGroup meanOf(const std::vector<TRectangle>& hits, const std::vector<std::size_t>& roots, std::size_t root) {
  double sum[4] = {};
  int count = 0;
  for (std::size_t i = 0; i < hits.size(); ++i) {
    if (roots[i] != root) continue;
    sum[0] += hits[i].x1;
    sum[1] += hits[i].y1;
    sum[2] += hits[i].x2;
    sum[3] += hits[i].y2;
    ++count;
  }
  return {toDetection(sum[0] / count, sum[1] / count, sum[2] / count, sum[3] / count), count};
}

// A weaker group whose centre lies in the middle of a stronger one, or the other way round, is the same face.
bool sameFace(const Detection& a, const Detection& b) {
  const double limit = 0.35 * std::max(a.w, b.w);
  return std::abs(a.cx - b.cx) < limit && std::abs(a.cy - b.cy) < limit;
}

}  // namespace

std::vector<Detection> libraryGroups(TIppiFaceDetector& detector, std::vector<TRectangle>& hits, int t) {
  int context = 0;
  CreateContext(&context);
  SetFaceDetectionThreshold(std::max(t - 1, 1), t, context);
  TMultiFaceDetector grouping(&detector);
  std::vector<TRectangle> kept;
  grouping.DetectFace(hits, kept, context);
  FreeContext(context);
  int* rawGroups = nullptr;
  int last = -1;
  float distance = 0;
  grouping.GroupFace(kept, rawGroups, last, distance);
  const std::unique_ptr<int[]> groups(rawGroups);
  int* raw[5] = {};
  grouping.SelectFace(kept, groups.get(), last, raw[0], raw[1], raw[2], raw[3], raw[4]);
  const std::unique_ptr<int[]> x1(raw[0]), y1(raw[1]), x2(raw[2]), y2(raw[3]), counts(raw[4]);
  std::vector<Detection> faces;
  const auto count = static_cast<std::size_t>(last + 1);
  for (std::size_t g = 0; g < count; ++g) faces.push_back(toDetection(x1[g], y1[g], x2[g], y2[g]));
  return faces;
}

std::vector<HitGroup> relativeGroups(const std::vector<TRectangle>& hits) {
  const std::vector<std::size_t> roots = connectedHits(hits);
  std::vector<HitGroup> all;
  for (std::size_t i = 0; i < hits.size(); ++i) {
    if (roots[i] == i) all.push_back(meanOf(hits, roots, i));
  }
  std::stable_sort(all.begin(), all.end(), [](const HitGroup& a, const HitGroup& b) { return a.hits > b.hits; });
  std::vector<HitGroup> kept;
  for (const HitGroup& group : all) {
    const bool repeated =
        std::any_of(kept.begin(), kept.end(), [&](const HitGroup& other) { return sameFace(group.face, other.face); });
    if (!repeated) kept.push_back(group);
  }
  return kept;
}

}  // namespace evaluation
