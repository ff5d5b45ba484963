#include "training/scan_windows.h"

#include <algorithm>

namespace {

constexpr float kScaleStep = 1.18f;
constexpr IppiSize kWindow = {kWindowSide, kWindowSide};
constexpr IppiRect kNormRect = {1, 1, kWindowSide - 2, kWindowSide - 2};
constexpr float kSumOffset = -16777216.0f;

HaarCascade stagesFrom(const TIppiFaceDetector& detector, int first) {
  return {detector.StageClassifiers + first, detector.StageThreshold + first, detector.StageCount - first};
}

}  // namespace

void WindowScanner::scan(TIppiImage& image, float scale, const std::function<void(const ScannedWindow&)>& visit) {
  HaarCascade cascade = stagesFrom(detector_, 0);
  HaarScan run(cascade, kWindow, kNormRect, kSumOffset);
  TIppiImage scaled;
  for (float s = scale;; s /= kScaleStep) {
    image.Resize(scaled, s);
    if (scaled.Pixels == nullptr || scaled.Width < kWindowSide || scaled.Height < kWindowSide) return;
    run.Run(scaled.Pixels, scaled.Step, scaled.RoiSize, found_);
    for (const HaarCascade::Position& at : found_) {
      visit({(at.x + 10) / static_cast<double>(s), image.Height - (at.y + 10) / static_cast<double>(s),
             kWindowSide / static_cast<double>(s), &scaled, at.x, at.y});
    }
  }
}

bool WindowScanner::passes(const Window& window, int firstStage) {
  TIppiImage image;
  image.AllocNew(kWindowSide, kWindowSide);
  for (int y = 0; y < kWindowSide; ++y) {
    std::copy_n(window.begin() + y * kWindowSide, kWindowSide,
                image.Pixels + static_cast<std::ptrdiff_t>(kWindowSide - 1 - y) * image.Step);
  }
  HaarCascade cascade = stagesFrom(detector_, firstStage);
  HaarScan(cascade, kWindow, kNormRect, kSumOffset).Run(image.Pixels, image.Step, image.RoiSize, found_);
  return !found_.empty();
}
