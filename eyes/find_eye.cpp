#include "eyes/find_eye.h"

#include <memory>

#include "eyes/eye_model.h"
#include "eyes/eye_score.h"
#include "eyes/eye_window.h"

void BestEyePlace(const float* scores, int* x, int* y) {
  float best = 1e10f;
  *x = *y = 0;
  for (int column = kFirstScoredColumn + 1; column < kLastScoredColumn; ++column) {
    for (int row = 0; row < kEyeWindowSide; ++row) {
      const float* at = scores + column + kEyeWindowSide * row;
      const float sum = at[0] + at[1] + at[-1];
      if (!(sum < best)) continue;
      best = sum;
      *x = column;
      *y = row;
    }
  }
}

int FindRightEye(TIppiImage* frame, int* x, int* y, bool mirror) {
  const auto window = std::make_unique<TEyeWindow>(*eyeHMaxPrototype);
  PrepareEyeWindow(frame, mirror, *window);
  float scores[kEyeWindowSide * kEyeWindowSide] = {};
  ScoreEyeWindow(*window, *eyeRows, scores);
  BestEyePlace(scores, x, y);
  *x += kEyeWindowLeft;
  *y += kEyeWindowTop;
  return 0;
}
