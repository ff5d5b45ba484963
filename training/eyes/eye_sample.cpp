#include "training/eyes/eye_sample.h"

#include <algorithm>
#include <memory>

#include "eyes/eye_window.h"
#include "image/TIppiImage.h"

namespace {

void copyCodes(const int* codes, std::size_t count, std::uint8_t* to) {
  std::transform(codes, codes + count, to, [](int code) { return static_cast<std::uint8_t>(code); });
}

std::uint8_t binOf(float value) { return static_cast<std::uint8_t>(value * 12.0f); }

void readC1(const TEyeHMaxFeatures& hmax, EyeSample& sample) {
  for (std::size_t at = 0; at < EyeSample::kSide * EyeSample::kSide; ++at) {
    for (int k = 0; k < 16; ++k) sample.c1[at][k] = binOf(hmax.c1Feature(k % 8, k / 8)[at]);
  }
}

void readS1(const TEyeHMaxFeatures& hmax, EyeSample& sample) {
  for (int k = 0; k < 16; ++k) {
    const auto& map = hmax.s1Response(k % 8, 2 * (k / 8));
    for (std::size_t at = 0; at < map.size(); ++at) {
      const std::uint8_t bin = binOf(map[at]);
      if (bin == 0) continue;
      sample.s1.push_back({static_cast<std::uint8_t>(k), static_cast<std::uint8_t>(at % EyeSample::kSide),
                           static_cast<std::uint8_t>(at / EyeSample::kSide), bin});
    }
  }
}

}  // namespace

EyeSample makeEyeSample(const EyeFrame& frame, int eye, const TEyeHMaxFeatures& prototype) {
  const bool mirror = eye == 1;
  TIppiImage image;
  frame.toImage(image);
  const auto window = std::make_unique<TEyeWindow>(prototype);
  PrepareEyeWindow(&image, mirror, *window);

  EyeSample sample;
  copyCodes(window->lbp0, std::size(sample.patterns0), sample.patterns0);
  copyCodes(window->lbp1, std::size(sample.patterns1), sample.patterns1);
  copyCodes(window->lbp2, std::size(sample.patterns2), sample.patterns2);
  readC1(window->hmax, sample);
  readS1(window->hmax, sample);
  const LabelledPoint& place = frame.eyes[static_cast<std::size_t>(eye)];
  sample.x = (mirror ? kEyeFrameSide - 1 - place.x : place.x) - kEyeWindowLeft;
  sample.y = place.y - kEyeWindowTop;
  return sample;
}

LabelledPoint reportedPlace(double x, double y, int eye) { return {eye == 0 ? x - 0.5 : x + 0.5, y - 0.5}; }
