#include "training/features/node_targets.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include "training/evaluation/point_errors.h"

namespace {

// Short of what an activation reaches, which would need endless weights.
constexpr double kReach = 0.98;

bool isIn(const evaluation::NodeGroup& group, std::size_t node) {
  return std::find(group.begin(), group.end(), node) != group.end();
}

}  // namespace

TargetBells parseBells(const std::string& text) {
  TargetBells bells;
  std::istringstream stream(text);
  for (std::string part; std::getline(stream, part, ',');) {
    std::istringstream numbers(part);
    TargetBell bell{};
    char colon = 0;
    if (!(numbers >> bell.amplitude >> colon >> bell.deviation) || colon != ':' || !(bell.deviation > 0)) {
      throw std::runtime_error("not AMPLITUDE:DEVIATION: " + part);
    }
    bells.push_back(bell);
  }
  return bells;
}

const TargetBells& NodeTargets::of(std::size_t node) const {
  if (isIn(evaluation::kForeheadNodes, node)) return forehead;
  return isIn(evaluation::kOutlineNodes, node) ? outline : inner;
}

float targetAt(const TargetBells& bells, double squaredDistance) {
  double depth = 0;
  for (const TargetBell& bell : bells) {
    depth += bell.amplitude * std::exp(-squaredDistance / (2 * bell.deviation * bell.deviation));
  }
  return static_cast<float>(kReach * (0.5 - depth));
}

void correctShifts(LabelShifts& shifts, const std::array<double, 80>& meanErrors, double share, double wanted) {
  for (std::size_t k = 0; k < shifts.size(); ++k) shifts[k] -= share * (meanErrors[k] - wanted);
}

void writeShifts(const std::string& file, const LabelShifts& shifts) {
  std::ofstream out(file);
  for (std::size_t n = 0; n < 40; ++n) out << shifts[2 * n] << ' ' << shifts[2 * n + 1] << '\n';
  if (!out.flush()) throw std::runtime_error("cannot write " + file);
}

LabelShifts readShifts(const std::string& file) {
  std::ifstream in(file);
  LabelShifts shifts;
  for (double& shift : shifts) {
    if (!(in >> shift)) throw std::runtime_error("not eighty shifts: " + file);
  }
  return shifts;
}
