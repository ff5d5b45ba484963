// The search for one eye.
#pragma once

class TIppiImage;

// Finds the eye at the smaller x in a gray frame of 128 by 128 pixels with an upright face, or, with `mirror`, in the
// frame's mirror image: (x, y) are then pixels of that image. x is from 26 to 51 and y from 16 to 47. Returns 0.
int FindRightEye(TIppiImage* frame, int* x, int* y, bool mirror);

// The place with the lowest sum of a score and its left and right neighbours. Of equal sums the one with the smaller
// column wins, then the smaller row. Scores as ScoreEyeWindow gives them.
void BestEyePlace(const float* scores, int* x, int* y);
