// The Gaussian filter, written to be obviously right: one pass after the other over whole planes. `Real` is float for
// the bits that the filter promises, double for what it is meant to approximate.
#pragma once

#include <algorithm>
#include <cmath>
#include <vector>

template <class Real>
struct GaussPlane {
  int width;
  int height;
  std::vector<Real> values;  // rows without padding

  GaussPlane(int w, int h) : width(w), height(h), values(static_cast<std::size_t>(w) * static_cast<std::size_t>(h)) {}

  // The nearest value counts beyond the frame.
  Real at(int x, int y) const {
    x = std::clamp(x, 0, width - 1);
    y = std::clamp(y, 0, height - 1);
    return values[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x)];
  }
};

template <class Real>
std::vector<Real> gaussWeights(int size, float sigma) {
  std::vector<Real> weights;
  const Real denominator = (Real{sigma} + Real{sigma}) * Real{sigma};
  Real sum = 0;
  for (int d = -(size / 2); d <= size / 2; ++d) {
    const Real exponent = static_cast<Real>(-d * d) / denominator;
    weights.push_back(static_cast<Real>(std::exp(static_cast<double>(exponent))));
    sum += weights.back();
  }
  for (Real& weight : weights) weight /= sum;
  return weights;
}

// One pass: along rows for (dx, dy) = (1, 0), along columns for (0, 1).
template <class Real>
GaussPlane<Real> gaussPass(const GaussPlane<Real>& plane, const std::vector<Real>& weights, int dx, int dy) {
  GaussPlane<Real> result(plane.width, plane.height);
  const int taps = static_cast<int>(weights.size());
  std::size_t i = 0;
  for (int y = 0; y < plane.height; ++y) {
    for (int x = 0; x < plane.width; ++x, ++i) {
      Real sum = 0;
      for (int t = 0; t < taps; ++t) {
        const int d = t - taps / 2;
        sum += plane.at(x + d * dx, y + d * dy) * weights[static_cast<std::size_t>(t)];
      }
      result.values[i] = sum;
    }
  }
  return result;
}

template <class Real>
GaussPlane<Real> gaussFiltered(const GaussPlane<Real>& plane, int size, float sigma) {
  const std::vector<Real> weights = gaussWeights<Real>(size, sigma);
  return gaussPass(gaussPass(plane, weights, 1, 0), weights, 0, 1);
}
