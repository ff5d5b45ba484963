// The C1 layer: pooling over place and scale, then comparison between orientations.
#include <cmath>
#include <cstdlib>
#include <new>

#include "eyes/TEyeHMaxFeatures.h"
#include "primitives/ippi.h"
#include "primitives/ipps.h"

namespace {

constexpr int kSide = TEyeHMaxFeatures::kSide;
constexpr int kArea = TEyeHMaxFeatures::kArea;

// Side of each band's pooling window, pixels.
constexpr int eyeC1FeatureWidth[TEyeHMaxFeatures::kBands] = {8, 8};

// The share of `value` in `sum`, with small shares raised. A share of nothing (0 / 0) counts as 1.
float compared(float value, float sum) {
  constexpr double kExponent = 0.30000001192092896;
  const float share = value / sum;
  // Most S1 values are cut to 0, and the power function is slow.
  if (share == 0) return 0;
  const auto result = static_cast<float>(std::pow(static_cast<double>(share), kExponent));
  return result <= 1.0f ? result : 1.0f;
}

// Without its fraction: S1 responses below 1 count as 0. What the score's tables were trained on.
float withoutFraction(float value) { return static_cast<float>(std::abs(static_cast<int32_t>(value))); }

}  // namespace

// Largest response of the band's two scales in a window around each pixel, 0 beyond the edges.
void TEyeHMaxFeatures::poolBand(int orientation, int band, TMap& pooled) {
  constexpr int kWidest = eyeC1FeatureWidth[1];
  constexpr int kPadded = kSide + 2 * (kWidest / 2);
  const int width = eyeC1FeatureWidth[band], half = width / 2, padded = kSide + 2 * half;
  TMap larger, other;
  ippsAbs_32f(s1Response(orientation, 2 * band).data(), larger.data(), kArea);
  ippsAbs_32f(s1Response(orientation, 2 * band + 1).data(), other.data(), kArea);
  ippsMaxEvery_32f_I(other.data(), larger.data(), kArea);

  constexpr int kStep = kSide * static_cast<int>(sizeof(float));
  const int paddedStep = padded * static_cast<int>(sizeof(float));
  std::array<float, kPadded * kPadded> bordered;
  ippiCopyConstBorder_32s_C1R(reinterpret_cast<const Ipp32s*>(larger.data()), kStep, {kSide, kSide},
                              reinterpret_cast<Ipp32s*>(bordered.data()), paddedStep, {padded, padded}, half, half, 0);
  const float* first = bordered.data() + half * padded + half;
  const IppStatus status =
      ippiFilterMax_32f_C1R(first, paddedStep, pooled.data(), kStep, {kSide, kSide}, {width, width}, {half, half});
  if (status != ippStsNoErr) throw std::bad_alloc();
}

void TEyeHMaxFeatures::normalise(int band) {
  for (std::size_t i = 0; i < kArea; ++i) {
    float sum = 0;
    for (int o = 0; o < kOrientations; ++o) sum += c1Feature(o, band)[i];
    for (int o = 0; o < kOrientations; ++o) {
      float& s1 = maps_->s1Responses[o][2 * band][i];
      float& c1 = c1Features_[static_cast<std::size_t>(o * kBands + band)][i];
      s1 = compared(withoutFraction(s1), sum);
      c1 = compared(c1, sum);
    }
  }
}

void TEyeHMaxFeatures::ComputeC1Features() {
  c1Features_.resize(kOrientations * kBands);
  for (int o = 0; o < kOrientations; ++o) {
    for (int b = 0; b < kBands; ++b) poolBand(o, b, c1Features_[static_cast<std::size_t>(o * kBands + b)]);
  }
  for (int b = 0; b < kBands; ++b) normalise(b);
}

std::vector<float> TEyeHMaxFeatures::GetC1Features(int x, int y) const {
  constexpr int kSlots = 8;  // bands an orientation has room for
  std::vector<float> values(kOrientations * kSlots);
  for (int o = 0; o < kOrientations; ++o) {
    for (int b = 0; b < kBands; ++b) {
      values[static_cast<std::size_t>(o * kSlots + b)] = c1Feature(o, b)[static_cast<std::size_t>(x + kSide * y)];
    }
  }
  return values;
}

void TEyeHMaxFeatures::FreeC1Features() { c1Features_ = {}; }
