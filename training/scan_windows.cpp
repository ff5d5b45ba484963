#include "training/scan_windows.h"

#include <algorithm>

#include "primitives/ippi.h"

namespace {

constexpr float kScaleStep = 1.18f;
constexpr IppiRect kNormRect = {1, 1, kWindowSide - 2, kWindowSide - 2};

}  // namespace

void WindowScanner::survivors(const TIppiImage& scaled, IppiSize positions, int firstStage) {
  const int columns = scaled.Width + 1;
  const std::size_t cells = static_cast<std::size_t>(columns) * static_cast<std::size_t>(scaled.Height + 1);
  if (square_.size() < cells) {
    sum_.resize(cells + HaarCascade::kSlack);
    norm_.resize(cells + HaarCascade::kSlack);
    square_.resize(cells);
  }
  const int floatStep = columns * 4;
  ippiSqrIntegral_8u32f64f_C1R(scaled.Pixels, scaled.Step, sum_.data(), floatStep, square_.data(), columns * 8,
                               scaled.RoiSize, -16777216.0f, 0.0);
  ippiRectStdDev_32f_C1R(sum_.data(), floatStep, square_.data(), columns * 8, norm_.data(), floatStep, positions,
                         kNormRect);
  HaarCascade cascade(detector_.StageClassifiers + firstStage, detector_.StageThreshold + firstStage,
                      detector_.StageCount - firstStage);
  cascade.SetPitch(columns);
  found_.clear();
  cascade.Scan(sum_.data(), norm_.data(), positions, found_);
}

void WindowScanner::scan(TIppiImage& image, float scale, const std::function<void(const ScannedWindow&)>& visit) {
  TIppiImage scaled;
  for (float s = scale;; s /= kScaleStep) {
    image.Resize(scaled, s);
    const IppiSize positions = {scaled.Width - kWindowSide + 1, scaled.Height - kWindowSide + 1};
    if (scaled.Pixels == nullptr || positions.width < 1 || positions.height < 1) return;
    survivors(scaled, positions, 0);
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
  survivors(image, {1, 1}, firstStage);
  return !found_.empty();
}
