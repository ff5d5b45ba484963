#include "training/evaluation/eye_errors.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace evaluation {

namespace {

double lengthOf(const LabelledPoint& v) { return std::hypot(v.x, v.y); }

}  // namespace

Eyes turnedEyes(const Eyes& eyes, const LabelledPoint& about, double degrees) {
  const double c = std::cos(degrees * std::numbers::pi / 180), s = std::sin(degrees * std::numbers::pi / 180);
  Eyes turned = eyes;
  for (LabelledPoint& eye : turned) {
    const double dx = eye.x - about.x, dy = eye.y - about.y;
    eye = {about.x + c * dx - s * dy, about.y + s * dx + c * dy};
  }
  return turned;
}

EyeError eyeErrorOf(const Eyes& truth, const Eyes& found) {
  const double distance = lengthOf({truth[1].x - truth[0].x, truth[1].y - truth[0].y});
  EyeError error{};
  for (std::size_t i = 0; i < 2; ++i) {
    error.offset[i] = {(found[i].x - truth[i].x) / distance, (found[i].y - truth[i].y) / distance};
    error.worse = std::max(error.worse, lengthOf(error.offset[i]));
  }
  return error;
}

double EyeTally::within(double limit) const {
  const auto count = std::count_if(errors_.begin(), errors_.end(), [=](const EyeError& e) { return e.worse <= limit; });
  return errors_.empty() ? 0 : static_cast<double>(count) / static_cast<double>(errors_.size());
}

double EyeTally::meanDistance() const {
  double sum = 0;
  for (const EyeError& error : errors_) sum += lengthOf(error.offset[0]) + lengthOf(error.offset[1]);
  return errors_.empty() ? 0 : sum / static_cast<double>(2 * errors_.size());
}

LabelledPoint EyeTally::meanOffset(std::size_t eye) const {
  LabelledPoint sum{};
  for (const EyeError& error : errors_) {
    sum.x += error.offset[eye].x;
    sum.y += error.offset[eye].y;
  }
  const double count = std::max(1.0, static_cast<double>(errors_.size()));
  return {sum.x / count, sum.y / count};
}

}  // namespace evaluation
