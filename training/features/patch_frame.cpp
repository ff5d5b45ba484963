#include "training/features/patch_frame.h"

#include <algorithm>
#include <iterator>

#include "primitives/kernels.h"
#include "training/evaluation/parallel.h"

namespace {

constexpr int kBefore = kPatchSide / 2;
static_assert(kRangeSide == kFrameSide);

}  // namespace

PatchFrame::PatchFrame(const FeatureFrame& frame)
    : points(frame.points),
      picture_(std::size_t{kRangePictureStep} * (kRangePictureSide + 1)),
      low_(kRangeSide * kRangeSide),
      high_(kRangeSide * kRangeSide) {
  for (int y = 0; y < kFrameSide; ++y) {
    std::copy_n(&frame.pixels[y * kFrameSide], kFrameSide, &picture_[(y + kBefore) * kRangePictureStep + kBefore]);
  }
  thread_local std::vector<std::uint8_t> work(kRangeWorkBytes);
  kernels().patch.patchExtremes(picture_.data(), 0, low_.data(), work.data());
  kernels().patch.patchExtremes(picture_.data(), 255, high_.data(), work.data());
}

// The same multiplication and addition as FindPatchScale's, written so that it becomes vectors.
void PatchFrame::read(int x, int y, float* inputs) const {
  const std::uint8_t low = low_[y * kRangeSide + x], high = high_[y * kRangeSide + x];
  const TPatchScale scale = FindPatchScale({low, high});
  const std::uint8_t* row = &picture_[y * kRangePictureStep + x];
  for (int j = 0; j < kPatchSide; ++j, row += kRangePictureStep) {
    for (int i = 0; i < kPatchSide; ++i) {
      const float value = static_cast<float>(row[i]) * scale.factor + scale.offset;
      inputs[j * kPatchSide + i] = std::min(std::max(value, -0.5f), 0.5f);
    }
  }
}

std::vector<PatchFrame> preparePatchFrames(const std::vector<FeatureFrame>& frames,
                                           const std::vector<std::size_t>& chosen, unsigned threads) {
  std::vector<std::vector<PatchFrame>> parts(threads);
  evaluation::forEachIndex(threads, threads, [&](std::size_t t) {
    const std::size_t first = t * chosen.size() / threads, end = (t + 1) * chosen.size() / threads;
    for (std::size_t i = first; i < end; ++i) parts[t].emplace_back(frames[chosen[i]]);
  });
  std::vector<PatchFrame> all;
  all.reserve(chosen.size());
  for (auto& part : parts) std::move(part.begin(), part.end(), std::back_inserter(all));
  return all;
}
