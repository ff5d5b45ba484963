// How much a place of the search window looks like an eye; lower is more.
#pragma once

#include "eyes/eye_model.h"

struct TEyeWindow;

// The score of place (x, y) of a window of 32 by 32 pixels, added up in single precision in a fixed order.
float eyeCalcValue(int width, int height, const TEyeHMaxFeatures* hmax, const int* lbp0, const int* lbp1,
                   const int* lbp2, int x, int y, const eyeFeature* model);

// Columns that are scored: each must have a neighbour that is not at the window's very edge.
constexpr int kFirstScoredColumn = 2;
constexpr int kLastScoredColumn = 29;

// The same scores, to the last bit, for all places of the scored columns: element x + 32 * y. Many times as fast as one
// place after the other, because the additions of a single score have to wait for each other.
void ScoreEyeWindow(const TEyeWindow& window, const eyeFeature& model, float* scores);
