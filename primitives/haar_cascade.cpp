#include "primitives/haar_cascade.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <stdexcept>

#include "primitives/haar_state.h"
#include "primitives/kernels.h"

namespace {

// Rows that go through all stages together: enough blocks to fill the kernels in the later stages, few
// enough that a band's integrals stay in the cache.
constexpr int kBandRows = 16;

constexpr int kPositions = HaarBlock::kPositions;

// Appends to a list of blocks in order of position. A block takes every position from its first on that it
// reaches, so the blocks of sparse survivors are fewer than those they came from.
class BlockWriter {
 public:
  explicit BlockWriter(HaarBlock* blocks) : blocks_(blocks) {}

  void Add(std::int32_t index, std::uint32_t lanes) {
    if (lanes == 0) return;
    if (count_ > 0 && index - blocks_[count_ - 1].sumIndex < kPositions) {
      HaarBlock& last = blocks_[count_ - 1];
      const std::int32_t shift = index - last.sumIndex;
      last.lanes |= (lanes << shift) & kAllLanes;
      lanes >>= kPositions - shift;
      if (lanes == 0) return;
      index += kPositions - shift;
    }
    const int skipped = std::countr_zero(lanes);
    blocks_[count_++] = {index + skipped, index + skipped, lanes >> skipped};
  }
  int Count() const { return count_; }

 private:
  static constexpr std::uint32_t kAllLanes = (1u << kPositions) - 1;
  HaarBlock* blocks_;
  int count_ = 0;
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

void HaarCascade::Scan(const float* sum, const float* norm, IppiSize roi, std::vector<Position>& survivors) {
  for (int top = 0; top < roi.height; top += kBandRows) {
    const std::ptrdiff_t offset = static_cast<std::ptrdiff_t>(top) * pitch_;
    ScanBand(sum + offset, norm + offset, {roi.width, std::min(kBandRows, roi.height - top)}, top, survivors);
  }
}

void HaarCascade::ScanBand(const float* sum, const float* norm, IppiSize band, int top,
                           std::vector<Position>& survivors) {
  int count = CoverBand(band);
  for (int s = 0; s < stageCount_ && count > 0; s++) {
    kernels().haar.stageBlocks(Stage(s), sum, norm, blocks_.data(), count);
    count = Repack(count);
  }
  for (int b = 0; b < count; b++) {
    for (std::uint32_t lanes = blocks_[static_cast<std::size_t>(b)].lanes; lanes != 0; lanes &= lanes - 1) {
      const int index = blocks_[static_cast<std::size_t>(b)].sumIndex + std::countr_zero(lanes);
      survivors.push_back({index % pitch_, top + index / pitch_});
    }
  }
}

int HaarCascade::CoverBand(IppiSize band) {
  blocks_.clear();
  for (int y = 0; y < band.height; y++) {
    for (int x = 0; x < band.width; x += kPositions) {
      const std::uint32_t lanes = (1u << std::min(band.width - x, kPositions)) - 1;
      blocks_.push_back({y * pitch_ + x, y * pitch_ + x, lanes});
    }
  }
  return static_cast<int>(blocks_.size());
}

// In place: the list never grows, since a block is written only after the one that it begins in was read.
int HaarCascade::Repack(int count) {
  BlockWriter writer(blocks_.data());
  for (int b = 0; b < count; b++) {
    const HaarBlock block = blocks_[static_cast<std::size_t>(b)];
    writer.Add(block.sumIndex, block.lanes);
  }
  return writer.Count();
}
