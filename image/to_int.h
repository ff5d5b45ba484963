// From a double to an int, defined for every value.
#pragma once

#include <cmath>
#include <limits>

// The nearest value that an int can hold; 0 for what is no number.
inline double ClampToInt(double value) {
  constexpr double low = std::numeric_limits<int>::min();
  constexpr double high = std::numeric_limits<int>::max();
  if (std::isnan(value)) return 0;
  return value < low ? low : value > high ? high : value;
}

// Towards zero; a value outside the range of int gives its nearest end.
inline int TruncateToInt(double value) { return static_cast<int>(ClampToInt(value)); }

// To the nearest integer, ties to even, with the same ends.
inline int RoundToInt(double value) { return static_cast<int>(std::lrint(ClampToInt(value))); }
