#include <algorithm>
#include <bit>
#include <memory>
#include <new>

#include "primitives/haar_state.h"
#include "primitives/ippi.h"
#include "primitives/kernels.h"

namespace {

IppStatus checkArguments(const Ipp32f* sum, int sumStep, const Ipp32f* norm, int normStep, const Ipp8u* mask,
                         int maskStep, IppiSize roi, const int* positive, const IppiHaarClassifier_32f* state) {
  if (sum == nullptr || norm == nullptr || mask == nullptr || positive == nullptr || state == nullptr) {
    return ippStsNullPtrErr;
  }
  if (roi.width < 1 || roi.height < 1) return ippStsSizeErr;
  if (sumStep < 4LL * roi.width || normStep < 4LL * roi.width || maskStep < roi.width) return ippStsStepErr;
  if (sumStep % 4 != 0 || normStep % 4 != 0) return ippStsNotEvenStepErr;
  return ippStsNoErr;
}

// Applies a stage to rows of a mask.
class MaskedStage {
 public:
  // The vector kernels read all positions of a block, which a narrow region does not have.
  MaskedStage(const HaarStage& stage, int width)
      : stage_(stage),
        width_(width),
        evaluate_(width < HaarBlock::kPositions ? kernels().haar.stageLanes : kernels().haar.stageBlocks) {}

  // Answers the number of survivors.
  int Row(const Ipp32f* sum, const Ipp32f* norm, Ipp8u* mask) {
    int survivors = 0;
    for (int x = 0; x < width_;) {
      int count = 0;
      for (; x < width_ && count < kBlocks; x++) {
        if (mask[x] != 0) x = AddBlock(mask, x, blocks_[count++]);
      }
      survivors += Evaluate(sum, norm, mask, count);
    }
    return survivors;
  }

 private:
  static constexpr int kBlocks = 64;

  // Covers x and the live positions after it; answers the last position covered. The last block of a row
  // starts early enough to end inside it, since nothing may be read past the row.
  int AddBlock(const Ipp8u* mask, int x, HaarBlock& block) const {
    const int first = std::min(x, std::max(width_ - HaarBlock::kPositions, 0));
    const int end = std::min(first + HaarBlock::kPositions, width_);
    block = {first, first, 0};
    for (int i = x; i < end; i++) block.lanes |= (mask[i] != 0 ? 1u : 0u) << (i - first);
    return end - 1;
  }

  int Evaluate(const Ipp32f* sum, const Ipp32f* norm, Ipp8u* mask, int count) {
    std::uint32_t before[kBlocks];
    for (int b = 0; b < count; b++) before[b] = blocks_[b].lanes;
    evaluate_(stage_, sum, norm, blocks_, count);
    int survivors = 0;
    for (int b = 0; b < count; b++) {
      survivors += std::popcount(blocks_[b].lanes);
      for (std::uint32_t dead = before[b] & ~blocks_[b].lanes; dead != 0; dead &= dead - 1) {
        mask[blocks_[b].sumIndex + std::countr_zero(dead)] = 0;
      }
    }
    return survivors;
  }

  const HaarStage& stage_;
  const int width_;
  const decltype(HaarKernels::stageBlocks) evaluate_;
  HaarBlock blocks_[kBlocks];
};

}  // namespace

IppStatus ippiApplyHaarClassifier_32f_C1R(const Ipp32f* sum, int sumStep, const Ipp32f* norm, int normStep, Ipp8u* mask,
                                          int maskStep, IppiSize roi, int* positive, Ipp32f threshold,
                                          IppiHaarClassifier_32f* state) {
  const IppStatus status = checkArguments(sum, sumStep, norm, normStep, mask, maskStep, roi, positive, state);
  if (status != ippStsNoErr) return status;
  const std::unique_ptr<HaarFeature[]> placed(new (std::nothrow) HaarFeature[state->features.size()]);
  if (placed == nullptr) return ippStsMemAllocErr;
  if (!placeHaarFeatures(*state, sumStep / 4, placed.get())) return ippStsSizeErr;
  const HaarStage stage = makeHaarStage(*state, placed.get(), threshold);
  MaskedStage masked(stage, roi.width);
  int survivors = 0;
  for (int y = 0; y < roi.height; y++) {
    survivors += masked.Row(sum, norm, mask);
    sum += sumStep / 4;
    norm += normStep / 4;
    mask += maskStep;
  }
  *positive = survivors;
  return ippStsNoErr;
}
