// The weights while they are trained.
#pragma once

#include <cstddef>
#include <vector>

#include "eyes/eye_model.h"
#include "training/eyes/eye_sample.h"

// All weights in one run of floats, so that a step of the solver is one loop. Rows end with an entry of their own for
// places outside the window. The weight of S1 bin 0 stays 0: nearly all responses fall there.
class EyeWeights {
 public:
  static constexpr std::size_t kRows = 11 * 11;   // dx, then dy
  static constexpr std::size_t kPatternRow = 60;  // 59 codes and "outside"
  static constexpr std::size_t kS1Row = 13;       // bins 0 to 12
  static constexpr std::size_t kS1Start = 3 * kRows * kPatternRow;
  static constexpr std::size_t kC1Start = kS1Start + 16 * kRows * kS1Row;
  static constexpr std::size_t kXStart = kC1Start + 13;
  static constexpr std::size_t kYStart = kXStart + 3;
  static constexpr std::size_t kCount = kYStart + 3;

  std::vector<float> values = std::vector<float>(kCount);

  // Entries that no feature may move: outside, and S1 bin 0.
  static bool isFixed(std::size_t index);
  // The layout of the library. Constants that shift all scores of a window alike are moved between the tables so that
  // the weights of bin 12, which are the first weights of what follows a row, come out as trained.
  eyeFeature toModel() const;
};

// Scores of the places with x from 2 to 29, element x + 32 * y.
void scoreSample(const EyeWeights& weights, const EyeSample& sample, float* scores);

// The other way: adds to `gradient` what a change of each score by `slopes` means for the weights. Slopes of less than
// `negligible` are left out.
void addGradient(const EyeSample& sample, const float* slopes, float negligible, std::vector<float>& gradient);
