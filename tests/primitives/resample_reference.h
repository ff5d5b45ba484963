// The resizes and the rotation in their slow and obvious form: one destination sample at a time, in double
// precision, straight from the definitions.
#pragma once

#include <algorithm>
#include <cmath>
#include <numbers>

// Everywhere `pixel(x, y)` gives the value of a source pixel's channel of interest.

// Length of the part of [begin, end) inside pixel `index`.
inline double overlap(int index, double begin, double end) {
  return std::max(0.0, std::min(end, index + 1.0) - std::max(begin, static_cast<double>(index)));
}

template <class Pixel>
double referenceAreaMean(const Pixel& pixel, int width, int height, int i, int j, double xFactor, double yFactor) {
  double sum = 0.0, area = 0.0;
  for (int y = static_cast<int>(j / yFactor); y < std::min<double>(height, (j + 1) / yFactor); ++y) {
    for (int x = static_cast<int>(i / xFactor); x < std::min<double>(width, (i + 1) / xFactor); ++x) {
      const double part = overlap(x, i / xFactor, (i + 1) / xFactor) * overlap(y, j / yFactor, (j + 1) / yFactor);
      sum += part * pixel(x, y);
      area += part;
    }
  }
  return sum / area;
}

// The continuous kernel differs from its table of hundredths by less than 2e-4.
inline double lanczos3(double x) {
  if (std::abs(x) >= 3.0) return 0.0;
  if (x == 0.0) return 1.0;
  const double angle = std::numbers::pi * x;
  return std::sin(angle) / angle * std::sin(angle / 3.0) / (angle / 3.0);
}

template <class Pixel>
double referenceLanczos(const Pixel& pixel, int width, int height, int i, int j, double xFactor, double yFactor) {
  const double u = i / xFactor, v = j / yFactor;
  const int left = static_cast<int>(u) - 2, top = static_cast<int>(v) - 2;
  double sum = 0.0, total = 0.0, across[6];
  for (int k = 0; k < 6; ++k) across[k] = lanczos3(left + k - u);
  for (int y = top; y < top + 6; ++y) {
    const double down = lanczos3(y - v);
    for (int k = 0; k < 6; ++k) {
      sum += across[k] * down * pixel(std::clamp(left + k, 0, width - 1), std::clamp(y, 0, height - 1));
      total += across[k] * down;
    }
  }
  return sum / total;
}

// Bilinear value at (u, v); neighbours outside the source count as `old`.
template <class Pixel>
double referenceBilinear(const Pixel& pixel, int width, int height, double u, double v, double old) {
  const int x = static_cast<int>(std::floor(u)), y = static_cast<int>(std::floor(v));
  double sum = 0.0;
  for (int k = 0; k < 4; ++k) {
    const int nx = x + k % 2, ny = y + k / 2;
    const double weight = (1.0 - std::abs(u - nx)) * (1.0 - std::abs(v - ny));
    const bool inside = nx >= 0 && ny >= 0 && nx < width && ny < height;
    sum += weight * (inside ? pixel(nx, ny) : old);
  }
  return sum;
}
