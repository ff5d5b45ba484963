#include "eyes/TEyeHMaxFeatures.h"

#include <algorithm>
#include <new>

#include "primitives/ippi.h"
#include "primitives/ipps.h"

namespace {

constexpr int kStep = TEyeHMaxFeatures::kSide * static_cast<int>(sizeof(float));  // bytes of a map's row
constexpr IppiSize kSize = {TEyeHMaxFeatures::kSide, TEyeHMaxFeatures::kSide};
// Contrast below this is rounding: the responses of such a pixel are not divided.
constexpr float kLeastEnergy = 1e-6f;

void scaled(const TEyeHMaxFeatures::TMap& src, float factor, TEyeHMaxFeatures::TMap& dst) {
  std::transform(src.begin(), src.end(), dst.begin(), [=](float v) { return v * factor; });
}

void divideByEnergy(TEyeHMaxFeatures::TMap& response, const TEyeHMaxFeatures::TMap& energy) {
  for (std::size_t i = 0; i < response.size(); ++i) {
    if (energy[i] > kLeastEnergy) response[i] /= energy[i];
  }
}

}  // namespace

TEyeHMaxFeatures::TEyeHMaxFeatures()
    : bank_(std::make_shared<const TBank>()), maps_(std::make_unique_for_overwrite<TMaps>()) {}

TEyeHMaxFeatures::TEyeHMaxFeatures(const TEyeHMaxFeatures& other)
    : bank_(other.bank_), maps_(std::make_unique_for_overwrite<TMaps>()) {
  makeTransform();
}

TEyeHMaxFeatures::~TEyeHMaxFeatures() {
  if (fftSpec_ != nullptr) ippiFFTFree_R_32f(fftSpec_);
}

void TEyeHMaxFeatures::makeTransform() {
  constexpr int kOrder = 5;  // 2^5 pixels a side
  constexpr int kFastHint = 1;
  if (fftSpec_ != nullptr) return;
  if (ippiFFTInitAlloc_R_32f(&fftSpec_, kOrder, kOrder, IPP_FFT_DIV_INV_BY_N, kFastHint) != ippStsNoErr) {
    throw std::bad_alloc();
  }
}

void TEyeHMaxFeatures::toSpectrum(TMap& map) const {
  if (ippiFFTFwd_RToPack_32f_C1IR(map.data(), kStep, fftSpec_, nullptr) != ippStsNoErr) throw std::bad_alloc();
}

void TEyeHMaxFeatures::filter(const TMap& spectrum, const TMap& kernel, TMap& result) const {
  result = spectrum;
  ippiMulPack_32f_C1IR(kernel.data(), kStep, result.data(), kStep, kSize);
  if (ippiFFTInv_PackToR_32f_C1IR(result.data(), kStep, fftSpec_, nullptr) != ippStsNoErr) throw std::bad_alloc();
}

void TEyeHMaxFeatures::SetPic(const unsigned char* bytes, int width, int height) {
  maps_->picture.fill(0);
  for (int y = 0; y < std::min(height, kSide); ++y) {
    const unsigned char* row = bytes + static_cast<std::ptrdiff_t>(y) * width;
    std::copy_n(row, std::min(width, kSide), maps_->picture.begin() + y * kSide);
  }
}

// Sum of squares less square of the sum by the area, over the disc around each pixel.
void TEyeHMaxFeatures::computeLocalEnergy(const TMap& picture, const TMap& squares) {
  TMap sums, squareSums;
  for (int s = 0; s < kScales; ++s) {
    filter(picture, bank_->discMasks[s], sums);
    filter(squares, bank_->discMasks[s], squareSums);
    const auto area = static_cast<float>(bank_->discAreas[s]);
    std::transform(sums.begin(), sums.end(), squareSums.begin(), maps_->localEnergy[s].begin(),
                   [=](float sum, float squareSum) { return area > 0 ? squareSum - sum * sum / area : 0.0f; });
  }
}

void TEyeHMaxFeatures::ApplyS1Filters() {
  TMap picture, squares;
  std::transform(maps_->picture.begin(), maps_->picture.end(), squares.begin(), [](float v) { return v * v; });
  scaled(squares, 1.0f / 65536, squares);
  scaled(maps_->picture, 1.0f / 256, picture);
  toSpectrum(picture);
  toSpectrum(squares);
  computeLocalEnergy(picture, squares);
  for (int s = 0; s < kScales; ++s) {
    for (int k = 0; k < kOrientations; ++k) {
      TMap& response = maps_->s1Responses[k][s];
      filter(picture, bank_->s1Filters[k][s], response);
      ippsAbs_32f_I(response.data(), kArea);
      divideByEnergy(response, maps_->localEnergy[s]);
    }
  }
}
