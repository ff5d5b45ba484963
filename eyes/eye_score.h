// How much a place of the search window looks like an eye; lower is more.
#pragma once

#include <cstddef>

#include "eyes/eye_model.h"

struct TEyeWindow;

// The score of place (x, y) of a window of 32 by 32 pixels, added up in single precision in a fixed order.
float eyeCalcValue(int width, int height, const TEyeHMaxFeatures* hmax, const int* lbp0, const int* lbp1,
                   const int* lbp2, int x, int y, const eyeFeature* model);

// Columns that are scored: each must have a neighbour that is not at the window's very edge.
constexpr int kFirstScoredColumn = 2;
constexpr int kLastScoredColumn = 29;

// A model's rows of weights in the order of the additions. Each row has two entries more than it has weights of its
// own: the next row's first weight, which the value 1.0 takes, and a 0 for places outside the window.
struct TEyeRows {
  static constexpr std::size_t kPatternRow = kLbpCodes + 1;  // codes do not run over
  static constexpr std::size_t kS1Row = kEyeBins + 2;

  explicit TEyeRows(const eyeFeature& eyes);

  float patterns[3][kEyeSpan][kEyeSpan][kPatternRow];
  float s1[2][8][kEyeSpan][kEyeSpan][kS1Row];  // band, orientation
  eyeFeature model;
};

// The same scores, to the last bit, for all places of the scored columns: element x + 32 * y. Many times as fast as one
// place after the other, because the additions of a single score have to wait for each other.
void ScoreEyeWindow(const TEyeWindow& window, const TEyeRows& rows, float* scores);
