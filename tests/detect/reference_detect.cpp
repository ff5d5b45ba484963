#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "image/TIppiImage.h"
#include "tests/detect/reference.h"

namespace reference {
namespace {

double ratioFor(const TIppiImage& image, int width) {
  const double p = width;
  if (image.Width < image.Height) return std::min((p + p) / 3.0 / image.Width, p / image.Height);
  return std::min(p / image.Width, (p + p) / 3.0 / image.Height);
}

int half(int sum) { return sum / 2; }

// The best of the turned crops; a count of 0 if none holds.
Cluster fineSearch(const TestCascade& cascade, TIppiImage& image, int xc, int yc, int w, double coarse, int steps,
                   const Thresholds& thresholds, double& bestAngle) {
  TIppiImage square;
  TIppiImage crop;
  image.CopyTo(square, xc - w, yc - w, xc + w, yc + w);
  square.Resize(crop, 80.0 / square.Width);
  Cluster best;
  bestAngle = 0.0;
  for (int k = -steps; k <= steps; k++) {
    const double a = coarse + k * 1.5;
    TIppiImage turned;
    crop.Rotate(turned, a);
    const Cluster found = clusterFace(detectFaceRaw(cascade, turned, 0.7f), thresholds);
    if (found.count > best.count) {
      best = found;
      bestAngle = a;
    }
  }
  return best;
}

int nearest(double value) { return static_cast<int>(std::nearbyint(value)); }

}  // namespace

Face detectFace(const TestCascade& cascade, TIppiImage& image, const Settings& settings) {
  const double ratio = ratioFor(image, settings.width);
  TIppiImage working;
  image.Resize(working, ratio);
  const Candidates candidates = resultDetectFaces(cascade, working, settings);
  if (candidates.rects.empty()) return {};
  std::size_t chosen = 0;
  for (std::size_t i = 1; i < candidates.rects.size(); i++) {
    if (candidates.counts[i] > candidates.counts[chosen]) chosen = i;
  }
  const double coarse = (1 - candidates.passes[chosen]) * 15.0;
  const TRectangle& r = candidates.rects[chosen];
  const int x1 = static_cast<int>(r.x1 / ratio), y1 = static_cast<int>(r.y1 / ratio);
  const int x2 = static_cast<int>(r.x2 / ratio), y2 = static_cast<int>(r.y2 / ratio);
  const int xc = half(x1 + x2), yc = half(y1 + y2), w = half(std::abs(x2 - x1) + std::abs(y2 - y1));
  if (!settings.angle) return {xc, yc, w, coarse, candidates.counts[chosen]};
  double angle = 0.0;
  const Cluster best = fineSearch(cascade, image, xc, yc, w, coarse, 7, settings.thresholds, angle);
  const auto place = [w](int c, int origin) { return static_cast<int>(2 * ((c / 80.0) * w) + origin); };
  const int left = place(best.x1, xc - w), top = place(best.y1, yc - w);
  const int right = place(best.x2, xc - w), bottom = place(best.y2, yc - w);
  return {half(left + right), half(top + bottom), half(std::abs(right - left) + std::abs(bottom - top)), angle,
          best.count};
}

std::vector<Face> detectMultipleFaces(const TestCascade& cascade, TIppiImage& image, const Settings& settings,
                                      int maxSizeInBytes) {
  const double ratio = ratioFor(image, settings.width);
  TIppiImage working;
  image.Resize(working, ratio);
  const Candidates candidates = resultDetectFaces(cascade, working, settings);
  std::vector<Face> faces;
  for (std::size_t i = 0; i < candidates.rects.size(); i++) {
    const TRectangle& r = candidates.rects[i];
    const int x1 = nearest(r.x1 / ratio), y1 = nearest(r.y1 / ratio);
    const int x2 = nearest(r.x2 / ratio), y2 = nearest(r.y2 / ratio);
    const int cx = half(x1 + x2), cy = half(y1 + y2), w = half(std::abs(x2 - x1) + std::abs(y2 - y1));
    double angle = 0.0;
    const Cluster best = fineSearch(cascade, image, cx, cy, w, (1 - candidates.passes[i]) * 15.0,
                                    settings.angle ? 7 : 0, settings.thresholds, angle);
    if (best.count == 0) continue;
    if (maxSizeInBytes < static_cast<int>(faces.size() + 1) * 24) break;
    const auto place = [w](int c, int origin) { return nearest(2 * ((c / 80.0) * w)) + origin; };
    const int left = place(best.x1, cx - w), top = place(best.y1, cy - w);
    const int right = place(best.x2, cx - w), bottom = place(best.y2, cy - w);
    faces.push_back(
        {half(left + right), half(top + bottom), half(std::abs(right - left) + std::abs(bottom - top)), angle, -1});
  }
  return faces;
}

}  // namespace reference
