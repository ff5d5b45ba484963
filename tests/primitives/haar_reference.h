// The integrals, the deviation and a boosted stage in their slow and obvious form.
#pragma once

#include <cmath>
#include <cstddef>
#include <cstring>
#include <random>
#include <vector>

#include "primitives/ippi.h"

// Rows of equal length, `pitch` elements apart; what lies past `width` keeps its first value.
template <typename T>
struct Plane {
  int width = 0;
  int height = 0;
  int pitch = 0;
  std::vector<T> data;

  Plane(int w, int h, int extra, T fill)
      : width(w),
        height(h),
        pitch(w + extra),
        data(static_cast<std::size_t>(w + extra) * static_cast<std::size_t>(h), fill) {}
  T& at(int x, int y) {
    return data[static_cast<std::size_t>(y) * static_cast<std::size_t>(pitch) + static_cast<std::size_t>(x)];
  }
  const T& at(int x, int y) const { return const_cast<Plane*>(this)->at(x, y); }
  int step() const { return pitch * static_cast<int>(sizeof(T)); }
  T* ptr() { return data.data(); }
};

template <typename T>
bool sameBits(const Plane<T>& a, const Plane<T>& b) {
  return a.data.size() == b.data.size() && std::memcmp(a.data.data(), b.data.data(), a.data.size() * sizeof(T)) == 0;
}

inline Plane<Ipp8u> randomPicture(int width, int height, std::mt19937& random) {
  Plane<Ipp8u> picture(width, height, static_cast<int>(random() % 7), 0);
  // A random range: flat pictures, dark ones and noise all occur.
  const auto low = static_cast<unsigned>(random() % 256);
  const unsigned span = random() % 3 == 0 ? 1 : 1 + static_cast<unsigned>(random() % (256 - low));
  for (Ipp8u& p : picture.data) p = static_cast<Ipp8u>(low + random() % span);
  return picture;
}

inline void referenceIntegrals(const Plane<Ipp8u>& src, float val, double valSqr, Plane<float>& sum,
                               Plane<double>& sqr) {
  for (int c = 0; c <= src.width; c++) {
    sum.at(c, 0) = val;
    sqr.at(c, 0) = valSqr;
  }
  for (int r = 1; r <= src.height; r++) {
    sum.at(0, r) = val;
    sqr.at(0, r) = valSqr;
    int s = 0;
    double q = 0;
    for (int c = 1; c <= src.width; c++) {
      const int p = src.at(c - 1, r - 1);
      s += p;
      q += p * p;
      sum.at(c, r) = static_cast<float>(s) + sum.at(c, r - 1);
      sqr.at(c, r) = sqr.at(c, r - 1) + q;
    }
  }
}

inline float referenceDeviation(const Plane<float>& sum, const Plane<double>& sqr, int x, int y, IppiRect rect) {
  const float n = static_cast<float>(rect.width * rect.height);
  const int x1 = x + rect.x, y1 = y + rect.y, x2 = x1 + rect.width, y2 = y1 + rect.height;
  const float mean = (sum.at(x2, y2) - sum.at(x2, y1) - sum.at(x1, y2) + sum.at(x1, y1)) / n;
  const double wide = mean;
  double v = (sqr.at(x2, y2) - sqr.at(x2, y1) - sqr.at(x1, y2) + sqr.at(x1, y1)) / static_cast<double>(n) - wide * wide;
  if (v < 0) v = 0;
  return std::sqrt(static_cast<float>(v));
}

// A stage as its maker hands it over, in the given order.
struct StageData {
  std::vector<IppiRect> rects;
  std::vector<float> weights;
  std::vector<float> thresholds;
  std::vector<float> val1;
  std::vector<float> val2;
  std::vector<int> num;
};

inline StageData randomStage(int classifiers, int windowWidth, int windowHeight, std::mt19937& random) {
  StageData stage;
  std::uniform_real_distribution<float> unit(0.0f, 1.0f);
  for (int c = 0; c < classifiers; c++) {
    const int features = random() % 4 != 0 ? 2 + static_cast<int>(random() % 2) : 1 + static_cast<int>(random() % 5);
    for (int f = 0; f < features; f++) {
      const int x = static_cast<int>(random() % static_cast<unsigned>(windowWidth));
      const int y = static_cast<int>(random() % static_cast<unsigned>(windowHeight));
      stage.rects.push_back({x, y, 1 + static_cast<int>(random() % static_cast<unsigned>(windowWidth - x)),
                             1 + static_cast<int>(random() % static_cast<unsigned>(windowHeight - y))});
      stage.weights.push_back((f == 0 ? -1.0f : 2.0f) * (1.0f / 324.0f));
    }
    stage.num.push_back(features);
    stage.thresholds.push_back((unit(random) - 0.5f) * 0.5f);
    stage.val1.push_back(unit(random));
    stage.val2.push_back(unit(random));
  }
  return stage;
}

inline float referenceFeature(const Plane<float>& sum, int x, int y, const IppiRect& r, float weight) {
  const int left = x + r.x, top = y + r.y, right = left + r.width, bottom = top + r.height;
  return (sum.at(right, bottom) - sum.at(left, bottom) - sum.at(right, top) + sum.at(left, top)) * weight;
}

// Two-feature classifiers first, then those of three, then all others.
inline float referenceStageSum(const StageData& stage, const Plane<float>& sum, float norm, int x, int y) {
  float s = 0;
  for (int group = 0; group < 3; group++) {
    std::size_t f = 0;
    for (std::size_t c = 0; c < stage.num.size(); c++) {
      const int num = stage.num[c];
      const std::size_t first = f;
      f += static_cast<std::size_t>(num);
      if ((num == 2 ? 0 : num == 3 ? 1 : 2) != group) continue;
      float value = referenceFeature(sum, x, y, stage.rects[first], stage.weights[first]);
      for (std::size_t i = first + 1; i < f; i++)
        value += referenceFeature(sum, x, y, stage.rects[i], stage.weights[i]);
      s += stage.thresholds[c] * norm > value ? stage.val1[c] : stage.val2[c];
    }
  }
  return s;
}

inline IppStatus buildState(const StageData& s, IppiHaarClassifier_32f** state) {
  return ippiHaarClassifierInitAlloc_32f(state, s.rects.data(), s.weights.data(), s.thresholds.data(), s.val1.data(),
                                         s.val2.data(), s.num.data(), static_cast<int>(s.num.size()));
}
