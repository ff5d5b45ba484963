// The gray values of a patch as the inputs of a network.
#pragma once

// The gray level that more than four of the 1024 pixels lie at or below, and the one that more than four lie at or
// above: the four darkest and the four brightest pixels don't count.
struct TPatchRange {
  unsigned char Low;
  unsigned char High;
};

TPatchRange FindPatchRange(const unsigned char* patch);

// Maps the range to -0.5 .. 0.5, and what lies outside it to the ends; a flat patch keeps its gray value.
void NormalisePatch(const unsigned char* patch, TPatchRange range, float* input);
