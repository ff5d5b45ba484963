// The search window of one eye and what its score reads.
#pragma once

#include "eyes/TEyeHMaxFeatures.h"

class TIppiImage;

// Place of the window in the 128 by 128 frame, pixels.
constexpr int kEyeFrameSide = 128;
constexpr int kEyeWindowLeft = 23;
constexpr int kEyeWindowTop = 16;
constexpr int kEyeWindowSide = 32;

// Everything row by row from the top.
struct TEyeWindow {
  explicit TEyeWindow(const TEyeHMaxFeatures& prototype) : hmax(prototype) {}
  unsigned char reflectance[32 * 32];
  int lbp0[32 * 32];  // pattern codes of the reflectance
  int lbp1[16 * 16];  // of its half
  int lbp2[8 * 8];    // of its quarter
  TEyeHMaxFeatures hmax;
};

// Cuts the window out of a gray frame, or out of the frame's mirror image, and computes its features.
void PrepareEyeWindow(TIppiImage* frame, bool mirror, TEyeWindow& window);
