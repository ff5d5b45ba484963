#include "features/patch.h"

#include "primitives/ippi.h"
#include "primitives/ipps.h"
#include "primitives/patch_kernels.h"

TPatchScale FindPatchScale(TPatchRange range) {
  const float low = range.Low, width = static_cast<float>(range.High - range.Low);
  if (range.Low == range.High) return {0.0F, low / 255.0F - 0.5F};
  return {1.0F / width, -low / width - 0.5F};
}

TPatchRange FindPatchRange(const unsigned char* patch) {
  constexpr int kLeftOut = 4;
  Ipp32s counts[256], levels[257];
  ippiHistogramEven_8u_C1R(patch, kPatchSide, {kPatchSide, kPatchSide}, counts, levels, 257, 0, 256);
  int low = 0, high = 255;
  for (int count = counts[low]; count <= kLeftOut; count += counts[low]) ++low;
  for (int count = counts[high]; count <= kLeftOut; count += counts[high]) --high;
  return {static_cast<unsigned char>(low), static_cast<unsigned char>(high)};
}

void NormalisePatch(const unsigned char* patch, TPatchRange range, float* input) {
  const TPatchScale scale = FindPatchScale(range);
  ippsConvert_8u32f(patch, input, kPatchPixels);
  ippsMulC_32f_I(scale.factor, input, kPatchPixels);
  ippsAddC_32f_I(scale.offset, input, kPatchPixels);
  ippsThreshold_LTValGTVal_32f_I(input, kPatchPixels, -0.5F, -0.5F, 0.5F, 0.5F);
}
