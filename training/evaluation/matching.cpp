#include "training/evaluation/matching.h"

#include <cmath>
#include <numbers>

namespace evaluation {

namespace {

double distance(const FaceSquare& truth, const Detection& detection) {
  return std::hypot(detection.cx - truth.xc, detection.cy - truth.yc);
}

}  // namespace

bool matches(const FaceSquare& truth, const Detection& detection, const Criterion& criterion) {
  return distance(truth, detection) <= criterion.centre * truth.w && detection.w >= criterion.minWidth * truth.w &&
         detection.w <= criterion.maxWidth * truth.w;
}

Deviation deviationOf(const FaceSquare& truth, const Detection& detection) {
  const double roll = truth.roll * std::numbers::pi / 180;
  const double x = detection.cx - truth.xc;
  const double y = detection.cy - truth.yc;
  // A face that is turned clockwise by `roll` comes upright by a turn of -roll.
  return {(x * std::cos(roll) + y * std::sin(roll)) / truth.w, (y * std::cos(roll) - x * std::sin(roll)) / truth.w,
          detection.w / truth.w, detection.angle + truth.roll};
}

PictureResult judge(const FaceSquare& truth, const std::vector<Detection>& detections, const Criterion& criterion) {
  PictureResult result;
  for (const Detection& detection : detections) {
    if (!matches(truth, detection, criterion)) {
      result.falseDetections.push_back(detection);
      continue;
    }
    if (result.found) ++result.repeats;
    if (!result.found || distance(truth, detection) < distance(truth, *result.found)) result.found = detection;
  }
  return result;
}

void Tally::add(const FaceSquare& truth, const PictureResult& result) {
  ++faces;
  repeats += result.repeats;
  falseFaces += static_cast<int>(result.falseDetections.size());
  if (!result.found) return;
  ++found;
  const Deviation deviation = deviationOf(truth, *result.found);
  sum.dx += deviation.dx;
  sum.dy += deviation.dy;
  sum.width += deviation.width;
  sum.angle += deviation.angle;
  absAngleSum += std::abs(deviation.angle);
}

void Tally::add(const Tally& other) {
  faces += other.faces;
  found += other.found;
  repeats += other.repeats;
  falseFaces += other.falseFaces;
  sum.dx += other.sum.dx;
  sum.dy += other.sum.dy;
  sum.width += other.sum.width;
  sum.angle += other.sum.angle;
  absAngleSum += other.absAngleSum;
}

Deviation Tally::mean() const {
  if (found == 0) return {};
  return {sum.dx / found, sum.dy / found, sum.width / found, sum.angle / found};
}

}  // namespace evaluation
