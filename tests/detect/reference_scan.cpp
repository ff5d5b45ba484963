#include <algorithm>
#include <cmath>

#include "image/TIppiImage.h"
#include "tests/detect/reference.h"

namespace reference {
namespace {

// The cascade in terms of stored rows, weighted and biased.
TestCascade prepared(const TestCascade& cascade) {
  TestCascade result = cascade;
  const float factor = 1.0f / ((static_cast<float>(cascade.windowWidth) - 1.0f - 1.0f) *
                               (static_cast<float>(cascade.windowHeight) - 1.0f - 1.0f));
  for (float& t : result.thresholds) t -= 0.0001f;
  for (StageData& stage : result.stages) {
    for (float& w : stage.weights) w *= factor;
    for (IppiRect& r : stage.rects) r.y = cascade.windowHeight - r.y - r.height;
  }
  return result;
}

Plane<Ipp8u> storedRows(const TIppiImage& image) {
  Plane<Ipp8u> rows(image.Width, image.Height, 0, 0);
  for (int y = 0; y < image.Height; y++) {
    std::copy_n(image.Pixels + static_cast<std::ptrdiff_t>(y) * image.Step, image.Width, &rows.at(0, y));
  }
  return rows;
}

Plane<Ipp8u> padded(const Plane<Ipp8u>& image, int bx, int by) {
  Plane<Ipp8u> result(image.width + 2 * bx, image.height + 2 * by, 0, 0);
  for (int y = 0; y < result.height; y++) {
    for (int x = 0; x < result.width; x++) {
      result.at(x, y) = image.at(std::clamp(x - bx, 0, image.width - 1), std::clamp(y - by, 0, image.height - 1));
    }
  }
  return result;
}

bool passes(const TestCascade& cascade, const Plane<float>& sum, float norm, int x, int y) {
  for (std::size_t s = 0; s < cascade.stages.size(); s++) {
    if (cascade.thresholds[s] > referenceStageSum(cascade.stages[s], sum, norm, x, y)) return false;
  }
  return true;
}

int rounded(float value) { return static_cast<int>(std::nearbyint(value)); }

void scanOne(const TestCascade& cascade, const Plane<Ipp8u>& image, int bx, int by, float s, int imageHeight,
             std::vector<TRectangle>& rects) {
  const int w = cascade.windowWidth;
  const int h = cascade.windowHeight;
  Plane<float> sum(image.width + 1, image.height + 1, 0, 0.0f);
  Plane<double> sqr(image.width + 1, image.height + 1, 0, 0.0);
  referenceIntegrals(image, -16777216.0f, 0.0, sum, sqr);
  for (int x = 0; x < image.width - w + 1; x++) {
    for (int y = 0; y < image.height - h + 1; y++) {
      const float norm = referenceDeviation(sum, sqr, x, y, {1, 1, w - 2, h - 2});
      if (!passes(cascade, sum, norm, x, y)) continue;
      const int u = x - bx;
      const int v = y - by;
      rects.push_back({rounded(static_cast<float>(u) / s), imageHeight - rounded(static_cast<float>(v + h) / s),
                       rounded(static_cast<float>(u + w) / s), imageHeight - rounded(static_cast<float>(v) / s)});
    }
  }
}

}  // namespace

std::vector<TRectangle> detectFaceRaw(const TestCascade& cascade, TIppiImage& image, float scale) {
  const TestCascade stored = prepared(cascade);
  std::vector<TRectangle> rects;
  float s = scale;
  for (;;) {
    const float width = static_cast<float>(image.Width) * s;
    const float height = static_cast<float>(image.Height) * s;
    if (static_cast<double>(width) <= cascade.windowWidth * 0.7) break;
    if (static_cast<double>(height) <= cascade.windowHeight * 0.7) break;
    TIppiImage scaled;
    image.Resize(scaled, s);
    const int bx = width > 50.0f ? 0 : rounded(width / 3.0f);
    const int by = width > 50.0f ? 0 : rounded(height / 3.0f);
    scanOne(stored, padded(storedRows(scaled), bx, by), bx, by, s, image.Height, rects);
    s = s / 1.18f;
  }
  return rects;
}

}  // namespace reference
