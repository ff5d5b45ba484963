// The three rotated passes and their merge into one list of candidates.
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <memory>

#include "detect/TMultiFaceDetector.h"
#include "image/TIppiImage.h"
#include "image/params.h"

namespace {

constexpr float kPi = 3.1415927f;
constexpr int kPasses = 3;
constexpr int kUprightPass = 1;
constexpr int kPassStep = 15;  // degrees

// The groups of one pass.
struct PassResult {
  std::vector<TRectangle> rects;
  std::vector<int> counts;
};

// The merged list; the three columns run in parallel.
struct FaceList {
  std::vector<TRectangle> rects;
  std::vector<int> passes;
  std::vector<int> counts;

  void Append(const TRectangle& rect, int pass, int count) {
    rects.push_back(rect);
    passes.push_back(pass);
    counts.push_back(count);
  }
};

int roundToEven(float value) { return static_cast<int>(std::lrint(value)); }

// Turns the centres back into the unrotated image. The rectangles keep their size and stay upright.
void moveBack(std::vector<TRectangle>& rects, const TIppiImage& image, float angle) {
  const int cw = image.Width / 2;
  const int ch = image.Height / 2;
  const float c = std::cos(angle);
  const float s = std::sin(angle);
  for (TRectangle& r : rects) {
    const int cx = (r.x1 + r.x2) / 2;
    const int cy = (r.y1 + r.y2) / 2;
    const auto dx = static_cast<float>(cx - cw);
    const auto dy = static_cast<float>(cy - ch);
    const int moveX = roundToEven(static_cast<float>(cw) + (c * dx - s * dy)) - cx;
    const int moveY = roundToEven(static_cast<float>(ch) + (dy * c + s * dx)) - cy;
    r = {r.x1 + moveX, r.y1 + moveY, r.x2 + moveX, r.y2 + moveY};
  }
}

PassResult groupMeans(TMultiFaceDetector& detector, std::vector<TRectangle>& rects, float& distance) {
  int* groupsOut = nullptr;
  int lastGroup = -1;
  detector.GroupFace(rects, groupsOut, lastGroup, distance);
  const std::unique_ptr<int[]> groups(groupsOut);
  int* columns[5] = {};
  detector.SelectFace(rects, groups.get(), lastGroup, columns[0], columns[1], columns[2], columns[3], columns[4]);
  const std::unique_ptr<int[]> x1(columns[0]), y1(columns[1]), x2(columns[2]), y2(columns[3]), counts(columns[4]);
  PassResult result;
  const auto groupCount = static_cast<std::size_t>(lastGroup + 1);
  for (std::size_t g = 0; g < groupCount; g++) {
    result.rects.push_back({x1[g], y1[g], x2[g], y2[g]});
    result.counts.push_back(counts[g]);
  }
  return result;
}

PassResult runPass(TMultiFaceDetector& detector, TIppiImage& image, int pass, float& distance, int context) {
  const float angle = (static_cast<float>((pass - kUprightPass) * kPassStep) * kPi) / 180.0f;
  std::vector<TRectangle> raw;
  std::vector<TRectangle> kept;
  detector.RunFaceDetectionRotated(image, angle, raw);
  detector.DetectFace(raw, kept, context);
  moveBack(kept, image, angle);
  return groupMeans(detector, kept, distance);
}

bool matches(const TRectangle& a, const TRectangle& b, float distance) {
  const auto within = [distance](int p, int q) { return static_cast<float>(std::abs(p - q)) < distance; };
  return within(a.x1, b.x1) && within(a.y1, b.y1) && within(a.x2, b.x2) && within(a.y2, b.y2);
}

// Every entry that a group matches takes it over if it has more members, so that one group can stand in
// several entries. A group that matches nothing is appended, and meets the groups after it.
void mergePass(const PassResult& result, int pass, float distance, FaceList& faces) {
  for (std::size_t g = 0; g < result.rects.size(); g++) {
    bool matched = false;
    for (std::size_t e = 0; e < faces.rects.size(); e++) {
      if (!matches(result.rects[g], faces.rects[e], distance)) continue;
      matched = true;
      if (result.counts[g] <= faces.counts[e]) continue;
      faces.rects[e] = result.rects[g];
      faces.counts[e] = result.counts[g];
      faces.passes[e] = pass;
    }
    if (!matched) faces.Append(result.rects[g], pass, result.counts[g]);
  }
}

std::unique_ptr<int[]> copyOf(const std::vector<int>& values) {
  auto copy = std::make_unique<int[]>(values.size());
  std::copy(values.begin(), values.end(), copy.get());
  return copy;
}

}  // namespace

void TMultiFaceDetector::ResultDetectFaces(TIppiImage& image, std::vector<TRectangle>& faces, int*& passes,
                                           int*& counts, int context) {
  const bool rotated = ContextHandleArbitraryRotations(context);
  const int first = rotated ? 0 : kUprightPass;
  const int last = rotated ? kPasses - 1 : kUprightPass;
  PassResult results[kPasses];
  float distance = 0;
  for (int pass = first; pass <= last; pass++) {
    float passDistance = 0;
    results[pass] = runPass(*this, image, pass, passDistance, context);
    distance = (distance + passDistance) * 0.5f;
  }
  FaceList list;
  list.rects = results[first].rects;
  list.counts = results[first].counts;
  list.passes.assign(list.rects.size(), first);
  for (int pass = first + 1; pass <= last; pass++) mergePass(results[pass], pass, distance, list);
  auto passesOut = copyOf(list.passes);
  counts = copyOf(list.counts).release();
  passes = passesOut.release();
  faces = std::move(list.rects);
}
