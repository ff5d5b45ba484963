// Uniform local binary patterns.
#pragma once

// For each pixel of a gray image (row by row, no padding) the code of which of `points` places on the circle of
// `radius` pixels around it are brighter: 0 for a pattern with more than one run of ones, 1 for none brighter, 2 for
// all, else 2 + length of the run + its start * (points - 1). `points` is at most 31.
void Calc_LBP(const unsigned char* pixels, int* codes, int width, int height, int points, int radius);
