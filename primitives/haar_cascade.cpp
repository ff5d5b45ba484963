#include "primitives/haar_cascade.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <stdexcept>

#include "primitives/haar_state.h"
#include "primitives/kernels.h"

namespace {

constexpr int kPositions = HaarBlock::kPositions;

// Writes a list of blocks in order of position. A block takes every position from its first on that it
// reaches, so the blocks of sparse survivors are fewer than those they came from. There is no branch,
// since which lanes survive can't be foreseen.
class BlockWriter {
 public:
  explicit BlockWriter(HaarBlock* blocks) : next_(blocks) {}

  // The lanes of a block at `index`, which lies past the one before. Writes one block too many.
  void Add(std::int32_t index, std::uint32_t lanes) {
    const std::int32_t shift = std::min(index - open_.sumIndex, kPositions);
    open_.lanes |= (lanes << shift) & kAllLanes;
    *next_ = open_;
    const std::int32_t taken = kPositions - shift;
    lanes >>= taken;
    const std::int32_t skipped = std::countr_zero(lanes | (kAllLanes + 1));
    const bool opens = lanes != 0;
    next_ += opens;
    const std::int32_t first = index + taken + skipped;
    open_.sumIndex = opens ? first : open_.sumIndex;
    open_.normIndex = open_.sumIndex;
    open_.lanes = opens ? lanes >> skipped : open_.lanes;
  }
  // Answers the number of blocks after the first, which is a place holder.
  std::ptrdiff_t Finish(const HaarBlock* blocks) {
    *next_ = open_;
    return next_ - blocks;
  }

 private:
  static constexpr std::uint32_t kAllLanes = (1u << kPositions) - 1;
  HaarBlock* next_;
  HaarBlock open_ = {-kPositions, -kPositions, 0};
};

}  // namespace

HaarCascade::HaarCascade(const IppiHaarClassifier_32f* const* states, const float* thresholds, int stageCount)
    : states_(states),
      thresholds_(thresholds),
      stageCount_(stageCount),
      placed_(static_cast<std::size_t>(stageCount)),
      stages_(static_cast<std::size_t>(stageCount)) {}

void HaarCascade::SetPitch(int pitch) {
  if (pitch == pitch_) return;
  pitch_ = pitch;
  placedStages_ = 0;
}

const HaarStage& HaarCascade::Stage(int s) {
  for (; placedStages_ <= s; placedStages_++) {
    const auto i = static_cast<std::size_t>(placedStages_);
    placed_[i].resize(states_[i]->features.size());
    if (!placeHaarFeatures(*states_[i], pitch_, placed_[i].data())) throw std::length_error("scan image is too wide");
    stages_[i] = makeHaarStage(*states_[i], placed_[i].data(), thresholds_[i]);
  }
  return stages_[static_cast<std::size_t>(s)];
}

void HaarCascade::Scan(const float* sum, const float* norm, IppiSize roi, int top, std::vector<Position>& survivors) {
  int count = Cover(roi);
  for (int s = 0; s < stageCount_ && count > 0; s++) {
    kernels().haar.stageBlocks(Stage(s), sum, norm, blocks_.data() + 1, count);
    count = Repack(count);
  }
  for (int b = 1; b <= count; b++) {
    for (std::uint32_t lanes = blocks_[static_cast<std::size_t>(b)].lanes; lanes != 0; lanes &= lanes - 1) {
      const int index = blocks_[static_cast<std::size_t>(b)].sumIndex + std::countr_zero(lanes);
      survivors.push_back({index % pitch_, top + index / pitch_});
    }
  }
}

// All positions of the region. The first block of both lists is a place holder.
int HaarCascade::Cover(IppiSize roi) {
  const int blocksPerRow = (roi.width + kPositions - 1) / kPositions;
  const int count = blocksPerRow * roi.height;
  blocks_.resize(static_cast<std::size_t>(count) + 1);
  repacked_.resize(blocks_.size());
  HaarBlock* block = blocks_.data() + 1;
  for (int y = 0; y < roi.height; y++) {
    for (int x = 0; x < roi.width; x += kPositions) {
      const std::uint32_t lanes = (1u << std::min(roi.width - x, kPositions)) - 1;
      *block++ = {y * pitch_ + x, y * pitch_ + x, lanes};
    }
  }
  return count;
}

int HaarCascade::Repack(int count) {
  BlockWriter writer(repacked_.data());
  for (const HaarBlock* block = blocks_.data() + 1; block <= blocks_.data() + count; block++) {
    writer.Add(block->sumIndex, block->lanes);
  }
  blocks_.swap(repacked_);
  return static_cast<int>(writer.Finish(blocks_.data()));
}
