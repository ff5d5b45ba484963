#include <algorithm>
#include <cmath>

#include "primitives/ippi.h"
#include "primitives/kernels.h"
#include "primitives/rows.h"

namespace {

// 0.299, 0.587 and 0.114 of 4096.
constexpr int kFixedWeights[3] = {1225, 2404, 467};

// Beyond this a sum of three products could pass the end of an int.
constexpr float kLargestCoefficient = 512.0f;

int weightOf(Ipp32f coefficient) {
  if (std::isnan(coefficient)) return 0;
  const double held = std::clamp(coefficient, -kLargestCoefficient, kLargestCoefficient);
  return static_cast<int>(held * 4096.0 + 0.5);
}

bool kernelMayRun(const int* weights) {
  return *std::min_element(weights, weights + 3) >= 0 && weights[0] + weights[1] + weights[2] <= 4096;
}

// Weights that leave the range of a byte saturate; only unusual callers come here.
IppStatus graySaturated(const Ipp8u* src, int srcStep, Ipp8u* dst, int dstStep, IppiSize roi, const int* weights,
                        std::size_t stride) {
  return forRows(src, srcStep, dst, dstStep, roi, [=](const Ipp8u* from, Ipp8u* to, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i, from += stride) {
      const int sum = weights[0] * from[0] + weights[1] * from[1] + weights[2] * from[2];
      to[i] = static_cast<Ipp8u>(std::clamp(sum >> 12, 0, 255));
    }
  });
}

IppStatus gray(const Ipp8u* src, int srcStep, Ipp8u* dst, int dstStep, IppiSize roi, const int* weights, GrayRow row) {
  return forRows(src, srcStep, dst, dstStep, roi,
                 [=](const Ipp8u* from, Ipp8u* to, std::size_t count) { row(from, to, count, weights); });
}

IppStatus colorToGray(const Ipp8u* src, int srcStep, Ipp8u* dst, int dstStep, IppiSize roi, const Ipp32f* coeffs,
                      std::size_t stride, GrayRow row) {
  if (const IppStatus status = checkRegion(roi, src, dst, coeffs)) return status;
  const int weights[3] = {weightOf(coeffs[0]), weightOf(coeffs[1]), weightOf(coeffs[2])};
  if (kernelMayRun(weights)) return gray(src, srcStep, dst, dstStep, roi, weights, row);
  return graySaturated(src, srcStep, dst, dstStep, roi, weights, stride);
}

}  // namespace

IppStatus ippiRGBToGray_8u_C3C1R(const Ipp8u* src, int srcStep, Ipp8u* dst, int dstStep, IppiSize roi) {
  return gray(src, srcStep, dst, dstStep, roi, kFixedWeights, kernels().pixel.grayC3);
}

IppStatus ippiRGBToGray_8u_AC4C1R(const Ipp8u* src, int srcStep, Ipp8u* dst, int dstStep, IppiSize roi) {
  return gray(src, srcStep, dst, dstStep, roi, kFixedWeights, kernels().pixel.grayAC4);
}

IppStatus ippiColorToGray_8u_C3C1R(const Ipp8u* src, int srcStep, Ipp8u* dst, int dstStep, IppiSize roi,
                                   const Ipp32f coeffs[3]) {
  return colorToGray(src, srcStep, dst, dstStep, roi, coeffs, 3, kernels().pixel.grayC3);
}

IppStatus ippiColorToGray_8u_AC4C1R(const Ipp8u* src, int srcStep, Ipp8u* dst, int dstStep, IppiSize roi,
                                    const Ipp32f coeffs[3]) {
  return colorToGray(src, srcStep, dst, dstStep, roi, coeffs, 4, kernels().pixel.grayAC4);
}
