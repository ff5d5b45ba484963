#include "training/scan_windows.h"

#include <algorithm>

#include "primitives/ippi.h"

namespace {

constexpr float kScaleStep = 1.18f;
constexpr IppiRect kNormRect = {1, 1, kWindowSide - 2, kWindowSide - 2};

}  // namespace

int WindowScanner::applyStages(const TIppiImage& scaled, IppiSize positions, int firstStage) {
  const int columns = scaled.Width + 1;
  const std::size_t cells = static_cast<std::size_t>(columns) * static_cast<std::size_t>(scaled.Height + 1);
  if (sum_.size() < cells) {
    sum_.resize(cells);
    square_.resize(cells);
    norm_.resize(cells);
    mask_.resize(cells);
  }
  const int floatStep = columns * 4;
  ippiSqrIntegral_8u32f64f_C1R(scaled.Pixels, scaled.Step, sum_.data(), floatStep, square_.data(), columns * 8,
                               scaled.RoiSize, -16777216.0f, 0.0);
  ippiRectStdDev_32f_C1R(sum_.data(), floatStep, square_.data(), columns * 8, norm_.data(), floatStep, positions,
                         kNormRect);
  ippiSet_8u_C1R(255, mask_.data(), columns, positions);
  int survivors = positions.width * positions.height;
  for (int stage = firstStage; stage < detector_.StageCount && survivors > 0; ++stage) {
    ippiApplyHaarClassifier_32f_C1R(sum_.data(), floatStep, norm_.data(), floatStep, mask_.data(), columns, positions,
                                    &survivors, detector_.StageThreshold[stage], detector_.StageClassifiers[stage]);
  }
  return survivors;
}

void WindowScanner::scan(TIppiImage& image, float scale, const std::function<void(const ScannedWindow&)>& visit) {
  TIppiImage scaled;
  for (float s = scale;; s /= kScaleStep) {
    image.Resize(scaled, s);
    const IppiSize positions = {scaled.Width - kWindowSide + 1, scaled.Height - kWindowSide + 1};
    if (scaled.Pixels == nullptr || positions.width < 1 || positions.height < 1) return;
    if (applyStages(scaled, positions, 0) == 0) continue;
    for (int row = 0; row < positions.height; ++row) {
      const unsigned char* mask = mask_.data() + static_cast<std::ptrdiff_t>(row) * (scaled.Width + 1);
      for (int x = 0; x < positions.width; ++x) {
        if (mask[x] == 0) continue;
        visit({(x + 10) / static_cast<double>(s), image.Height - (row + 10) / static_cast<double>(s),
               kWindowSide / static_cast<double>(s), &scaled, x, row});
      }
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
  return applyStages(image, {1, 1}, firstStage) > 0;
}
