#include <cmath>
#include <cstdlib>

#include "image/TIppiImage.h"
#include "tests/detect/reference.h"

namespace reference {
namespace {

template <typename Distance>
bool near(const TRectangle& a, const TRectangle& b, Distance d) {
  return static_cast<Distance>(std::abs(a.x1 - b.x1)) < d && static_cast<Distance>(std::abs(a.y1 - b.y1)) < d &&
         static_cast<Distance>(std::abs(a.x2 - b.x2)) < d && static_cast<Distance>(std::abs(a.y2 - b.y2)) < d;
}

int alike(const std::vector<TRectangle>& rects, const TRectangle& r) {
  int count = 0;
  for (const TRectangle& other : rects) {
    const int difference = (r.x2 - r.x1) - (other.x2 - other.x1);
    if (difference >= -30 && difference <= 30) count++;
  }
  return count;
}

Groups groupMeans(const std::vector<TRectangle>& rects, float& distance) {
  const std::vector<int> groups = groupFace(rects, distance);
  Groups result;
  for (int g = 0;; g++) {
    int sums[4] = {};
    int members = 0;
    for (std::size_t i = 0; i < rects.size(); i++) {
      if (groups[i] != g) continue;
      sums[0] += rects[i].x1;
      sums[1] += rects[i].y1;
      sums[2] += rects[i].x2;
      sums[3] += rects[i].y2;
      members++;
    }
    if (members == 0) return result;
    result.rects.push_back({sums[0] / members, sums[1] / members, sums[2] / members, sums[3] / members});
    result.counts.push_back(members);
  }
}

Groups runPass(const TestCascade& cascade, TIppiImage& image, int degrees, const Thresholds& thresholds,
               float& distance) {
  const float a = static_cast<float>(degrees) * 3.1415927f / 180.0f;
  std::vector<TRectangle> raw;
  if (degrees == 0) {
    raw = detectFaceRaw(cascade, image, 1.0f);
  } else {
    TIppiImage rotated;
    const float back = (-a / 3.1415927f) * 180.0f;
    image.Rotate(rotated, static_cast<double>(back));
    raw = detectFaceRaw(cascade, rotated, 1.0f);
  }
  std::vector<TRectangle> kept = supported(raw, thresholds);
  const int cw = image.Width / 2;
  const int ch = image.Height / 2;
  const float c = cosf(a);
  const float s = sinf(a);
  for (TRectangle& r : kept) {
    const int cx = (r.x1 + r.x2) / 2;
    const int cy = (r.y1 + r.y2) / 2;
    const float fx = static_cast<float>(cx - cw);
    const float fy = static_cast<float>(cy - ch);
    const int rx = static_cast<int>(std::nearbyint(static_cast<float>(cw) + (c * fx - s * fy)));
    const int ry = static_cast<int>(std::nearbyint(static_cast<float>(ch) + (fy * c + s * fx)));
    r.x1 += rx - cx;
    r.x2 += rx - cx;
    r.y1 += ry - cy;
    r.y2 += ry - cy;
  }
  return groupMeans(kept, distance);
}

}  // namespace

std::vector<TRectangle> supported(const std::vector<TRectangle>& rects, const Thresholds& thresholds) {
  int sum = 0;
  int count = 0;
  for (const TRectangle& r : rects) {
    if (alike(rects, r) < thresholds.threshold1) continue;
    sum += r.x2 - r.x1;
    count++;
  }
  std::vector<TRectangle> result;
  if (count == 0) return result;
  const int d = sum / count / 3;
  for (const TRectangle& r : rects) {
    int neighbours = 0;
    for (const TRectangle& other : rects) neighbours += near(r, other, d) ? 1 : 0;
    if (neighbours >= thresholds.threshold2) result.push_back(r);
  }
  return result;
}

Cluster clusterFace(const std::vector<TRectangle>& rects, const Thresholds& thresholds) {
  Cluster c;
  for (const TRectangle& r : supported(rects, thresholds)) {
    c.x1 += r.x1;
    c.y1 += r.y1;
    c.x2 += r.x2;
    c.y2 += r.y2;
    c.count++;
  }
  if (c.count > 0) {
    c.x1 /= c.count;
    c.y1 /= c.count;
    c.x2 /= c.count;
    c.y2 /= c.count;
  }
  return c;
}

std::vector<int> groupFace(const std::vector<TRectangle>& rects, float& distance) {
  distance = 0;
  std::vector<int> groups(rects.size(), -1);
  if (rects.empty()) return groups;
  for (const TRectangle& r : rects) distance += static_cast<float>(r.x2 - r.x1);
  distance = static_cast<float>(static_cast<double>(distance) / (static_cast<double>(rects.size()) * 1.5));
  int last = -1;
  for (std::size_t i = 0; i < rects.size(); i++) {
    if (groups[i] != -1) continue;
    groups[i] = ++last;
    for (std::size_t j = 0; j < rects.size(); j++) {
      if (groups[j] == -1 && near(rects[i], rects[j], distance)) groups[j] = last;
    }
  }
  return groups;
}

Candidates resultDetectFaces(const TestCascade& cascade, TIppiImage& image, const Settings& settings) {
  Groups passes[3];
  float distance = 0;
  for (int p = 0; p < 3; p++) {
    if (p != 1 && !settings.rotations) continue;
    float d = 0;
    passes[p] = runPass(cascade, image, (p - 1) * 15, settings.thresholds, d);
    distance = (distance + d) * 0.5f;
  }
  const int base = settings.rotations ? 0 : 1;
  Candidates faces;
  faces.rects = passes[base].rects;
  faces.counts = passes[base].counts;
  faces.passes.assign(faces.rects.size(), base);
  if (!settings.rotations) return faces;
  for (int p = 1; p < 3; p++) {
    for (std::size_t g = 0; g < passes[p].rects.size(); g++) {
      bool matched = false;
      for (std::size_t e = 0; e < faces.rects.size(); e++) {
        if (!near(passes[p].rects[g], faces.rects[e], distance)) continue;
        matched = true;
        if (passes[p].counts[g] > faces.counts[e]) {
          faces.rects[e] = passes[p].rects[g];
          faces.counts[e] = passes[p].counts[g];
          faces.passes[e] = p;
        }
      }
      if (matched) continue;
      faces.rects.push_back(passes[p].rects[g]);
      faces.counts.push_back(passes[p].counts[g]);
      faces.passes.push_back(p);
    }
  }
  return faces;
}

}  // namespace reference
