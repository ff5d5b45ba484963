#include "detect/TMultiFaceDetector.h"

#include <cmath>
#include <cstdlib>
#include <memory>

#include "detect/TIppiFaceDetector.h"
#include "detect/neighbours.h"
#include "image/TIppiImage.h"

namespace {

constexpr float kPi = 3.1415927f;

bool within(int a, int b, float distance) { return static_cast<float>(std::abs(a - b)) < distance; }

bool closerThan(const TRectangle& a, const TRectangle& b, float distance) {
  return within(a.x1, b.x1, distance) && within(a.y1, b.y1, distance) && within(a.x2, b.x2, distance) &&
         within(a.y2, b.y2, distance);
}

// Two thirds of the mean width, in pixels.
float groupingDistance(const std::vector<TRectangle>& rects) {
  float widths = 0;
  for (const TRectangle& r : rects) widths += static_cast<float>(r.x2 - r.x1);
  return static_cast<float>(static_cast<double>(widths) / (static_cast<double>(rects.size()) * 1.5));
}

}  // namespace

void TMultiFaceDetector::RunFaceDetectionRotated(TIppiImage& image, float angle, std::vector<TRectangle>& rects) {
  if (std::fabs(angle) < 1e-05) {
    Detector->DetectFaceRaw(image, rects, 1.0f);
    return;
  }
  TIppiImage rotated;
  image.Rotate(rotated, (-angle / kPi) * 180.0f);
  Detector->DetectFaceRaw(rotated, rects, 1.0f);
}

void TMultiFaceDetector::DetectFace(std::vector<TRectangle>& raw, std::vector<TRectangle>& kept, int context) {
  for (const int i : FindSupported(raw, context)) kept.push_back(raw[static_cast<std::size_t>(i)]);
}

void TMultiFaceDetector::GroupFace(std::vector<TRectangle>& rects, int*& groups, int& lastGroup, float& distance) {
  lastGroup = -1;
  distance = 0;
  auto numbers = std::make_unique<int[]>(rects.size());
  if (!rects.empty()) {
    distance = groupingDistance(rects);
    for (std::size_t i = 0; i < rects.size(); i++) numbers[i] = -1;
    const NeighbourIndex index(rects, static_cast<int>(std::ceil(distance)));
    for (std::size_t i = 0; i < rects.size(); i++) {
      if (numbers[i] != -1) continue;
      numbers[i] = ++lastGroup;
      index.Near(rects[i], [&](int other) {
        const auto j = static_cast<std::size_t>(other);
        if (numbers[j] == -1 && closerThan(rects[i], rects[j], distance)) numbers[j] = lastGroup;
      });
    }
  }
  groups = numbers.release();
}

void TMultiFaceDetector::SelectFace(std::vector<TRectangle>& rects, int* groups, int lastGroup, int*& x1, int*& y1,
                                    int*& x2, int*& y2, int*& counts) {
  const auto size = static_cast<std::size_t>(lastGroup + 1);
  std::vector<long long> sums[4] = {std::vector<long long>(size), std::vector<long long>(size),
                                    std::vector<long long>(size), std::vector<long long>(size)};
  auto members = std::make_unique<int[]>(size);
  for (std::size_t i = 0; i < rects.size(); i++) {
    const auto g = static_cast<std::size_t>(groups[i]);
    sums[0][g] += rects[i].x1;
    sums[1][g] += rects[i].y1;
    sums[2][g] += rects[i].x2;
    sums[3][g] += rects[i].y2;
    members[g]++;
  }
  std::unique_ptr<int[]> means[4];
  for (int k = 0; k < 4; k++) {
    means[k] = std::make_unique<int[]>(size);
    for (std::size_t g = 0; g < size; g++) means[k][g] = static_cast<int>(sums[k][g] / members[g]);
  }
  x1 = means[0].release();
  y1 = means[1].release();
  x2 = means[2].release();
  y2 = means[3].release();
  counts = members.release();
}
