// The gray values of a patch as the inputs of a network.
#pragma once

// The gray level that more than four of the 1024 pixels lie at or below, and the one that more than four lie at or
// above: the four darkest and the four brightest pixels don't count.
struct TPatchRange {
  unsigned char Low;
  unsigned char High;
};

// An input is the gray value times `factor` plus `offset`, clamped to -0.5 .. 0.5.
struct TPatchScale {
  float factor;
  float offset;
};

// Maps the range to -0.5 .. 0.5. A patch of one gray value keeps that value, all its outliers with it.
TPatchScale FindPatchScale(TPatchRange range);

// What a network sees of 1024 contiguous pixels, for training; the search takes its inputs from TPatchImage.
TPatchRange FindPatchRange(const unsigned char* patch);
void NormalisePatch(const unsigned char* patch, TPatchRange range, float* input);
