#include "portrait_check.h"

#include <limits>

#include "head_measure.h"

namespace {

constexpr double kNoLimit = std::numeric_limits<double>::infinity();

struct Range {
  double lowest;
  double highest;
};

// Of what a standard says nothing about.
constexpr Range kFree = {-kNoLimit, kNoLimit};

// Percent of the portrait's height or width, degrees and pixels.
struct Limits {
  Range headHeight;
  Range headWidth;
  Range eyesFromTop;
  Range aspect;
  Range eyeDistance;
  Range side;
};

// Head: ICAO Doc 9303 part 3, 70 to 80 % of the height from chin to crown. Eyes 30 to 50 % below the top, width 74 to
// 80 % of the height, at least 90 pixels between the eyes: ISO/IEC 39794-5.
// The head's width is 50 to 75 % of the portrait's there.
constexpr Limits kIcaoLimits = {{70, 80}, {50, 75}, {30, 50}, {74, 80}, {90, kNoLimit}, kFree};

// US Department of State: a square of 600 to 1200 pixels, a head of 50 to 69 % of it, eyes 56 to 69 % above the bottom.
constexpr Limits kUsLimits = {{50, 69}, kFree, {31, 44}, {99.9, 100.1}, kFree, {600, 1200}};

// Used with both: the middle between the eyes 45 to 55 % from the left (ISO/IEC 39794-5), and up to 8 degrees of roll
// (ICAO's technical report on portrait quality).
constexpr Range kCentre = {45, 55};
constexpr Range kTilt = {-8, 8};

Measure measure(const char* name, const char* unit, double value, Range range, bool estimated = false) {
  return {name, unit, value, range.lowest, range.highest, estimated};
}

}  // namespace

std::vector<Measure> checkPortrait(Standard standard, Size size, size_t faces, const FacePoints& points) {
  const Limits& limits = standard == Standard::kUs ? kUsLimits : kIcaoLimits;
  const HeadMeasure head = measureHead(points);
  const double percentOfHeight = 100.0 / size.height;
  const double percentOfWidth = 100.0 / size.width;
  std::vector<Measure> measures = {
      measure("faces", "", static_cast<double>(faces), {1, 1}),
      measure("aspect", "%", size.width * percentOfHeight, limits.aspect),
      measure("width", "pixels", size.width, limits.side),
      measure("head_height", "%", head.height * percentOfHeight, limits.headHeight, true),
      measure("head_width", "%", head.width * percentOfWidth, limits.headWidth, true),
      measure("eye_line", "%", (head.eyes.y + 0.5) * percentOfHeight, limits.eyesFromTop),
      measure("centring", "%", (head.eyes.x + 0.5) * percentOfWidth, kCentre),
      measure("eye_distance", "pixels", head.eyeDistance, limits.eyeDistance),
      measure("tilt", "degrees", head.tilt, kTilt),
  };
  std::erase_if(measures, [](const Measure& one) { return one.lowest == kFree.lowest; });
  return measures;
}
