#include "eyes/eye_window.h"

#include <algorithm>
#include <cstddef>

#include "eyes/illumination.h"
#include "eyes/lbp.h"
#include "image/TIppiImage.h"
#include "primitives/ippi.h"

namespace {

constexpr int kPoints = 8;  // of the patterns' circle
constexpr int kRadius = 2;  // pixels

unsigned char* rowFromTop(const TIppiImage& image, int y) {
  return image.Pixels + static_cast<std::ptrdiff_t>(image.Height - 1 - y) * image.Step;
}

// The top left part of the image, row by row.
void readPixels(const TIppiImage& image, unsigned char* pixels, int side) {
  for (int y = 0; y < side; ++y)
    std::copy_n(rowFromTop(image, y), side, pixels + static_cast<std::ptrdiff_t>(y) * side);
}

void writePixels(const unsigned char* pixels, TIppiImage& image) {
  for (int y = 0; y < image.Height; ++y) {
    std::copy_n(pixels + static_cast<std::ptrdiff_t>(y) * image.Width, image.Width, rowFromTop(image, y));
  }
}

void cutWindow(TIppiImage& frame, bool mirror, TIppiImage& window) {
  TIppiImage work(imGray8);
  work.Assign(frame);
  if (mirror) ippiMirror_8u_C1IR(work.Pixels, work.Step, work.RoiSize, ippAxsVertical);
  constexpr int kLast = kEyeWindowSide - 1;
  work.CopyTo(window, kEyeWindowLeft, kEyeWindowTop, kEyeWindowLeft + kLast, kEyeWindowTop + kLast);
}

// The ratio's small surplus over a half or a quarter keeps the floored side from falling one pixel short.
void patternsOfReduced(TIppiImage& window, double ratio, int side, int* codes) {
  TIppiImage reduced(imGray8);
  unsigned char pixels[kEyeWindowSide * kEyeWindowSide];
  window.Resize(reduced, ratio);
  readPixels(reduced, pixels, side);
  Calc_LBP(pixels, codes, side, side, kPoints, kRadius);
}

}  // namespace

void PrepareEyeWindow(TIppiImage* frame, bool mirror, TEyeWindow& window) {
  TIppiImage work(imGray8);
  cutWindow(*frame, mirror, work);
  readPixels(work, window.reflectance, kEyeWindowSide);
  IlluminationReflactanceDecomposition(window.reflectance, kEyeWindowSide, kEyeWindowSide);
  writePixels(window.reflectance, work);

  Calc_LBP(window.reflectance, window.lbp0, kEyeWindowSide, kEyeWindowSide, kPoints, kRadius);
  patternsOfReduced(work, 0.5125, kEyeWindowSide / 2, window.lbp1);
  patternsOfReduced(work, 0.2625, kEyeWindowSide / 4, window.lbp2);

  window.hmax.SetPic(window.reflectance, kEyeWindowSide, kEyeWindowSide);
  window.hmax.ApplyS1Filters();
  window.hmax.ComputeC1Features();
}
