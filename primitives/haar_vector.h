// Stage evaluation over vectors of positions, once for every vector type: V names the type and its
// operations. Included by kernel files only; the unnamed namespace keeps each file's instructions its own.
#pragma once

#include "primitives/haar_kernels.h"

namespace {

// kVectors vectors of positions go through the stage side by side and share the loads of its tables.
template <class V, int kVectors>
class HaarStageRun {
 public:
  HaarStageRun(const Ipp32f* sum, const Ipp32f* norm, const HaarBlock* blocks) {
    constexpr int kPerBlock = HaarBlock::kPositions / V::kLanes;
    for (int k = 0; k < kVectors; k++) {
      const HaarBlock& block = blocks[k / kPerBlock];
      const int lane = k % kPerBlock * V::kLanes;
      window_[k] = sum + block.sumIndex + lane;
      norm_[k] = V::load(norm + block.normIndex + lane);
      sum_[k] = V::set(0.0f);
    }
  }

  void Run(const HaarStage& stage) {
    const HaarFeature* feature = stage.features;
    const HaarClassifier* classifier = stage.classifiers;
    for (int i = 0; i < stage.twos; i++, feature += 2) Two(feature, *classifier++);
    for (int i = 0; i < stage.threes; i++, feature += 3) Three(feature, *classifier++);
    for (int i = 0; i < stage.others; i++) {
      Any(feature, *classifier);
      feature += classifier++->features;
    }
  }

  // Bits of vector k whose sum stays below the threshold.
  unsigned Failed(int k, float threshold) const { return V::mask(V::greater(V::set(threshold), sum_[k])); }

 private:
  using Vector = typename V::Type;

  // Left to right in single precision: near the integral's offset of -2^24 another order gives other sums.
  static Vector Weighted(const HaarFeature& f, const Ipp32f* window) {
    Vector sum = V::sub(V::load(window + f.corner[0]), V::load(window + f.corner[1]));
    sum = V::sub(sum, V::load(window + f.corner[2]));
    sum = V::add(sum, V::load(window + f.corner[3]));
    return V::mul(sum, V::set(f.weight));
  }

  void Vote(const HaarClassifier& c, const Vector* value) {
    for (int k = 0; k < kVectors; k++) {
      const auto below = V::greater(V::mul(V::set(c.threshold), norm_[k]), value[k]);
      sum_[k] = V::add(sum_[k], V::select(below, V::set(c.val1), V::set(c.val2)));
    }
  }

  void Two(const HaarFeature* f, const HaarClassifier& c) {
    Vector value[kVectors];
    for (int k = 0; k < kVectors; k++) value[k] = V::add(Weighted(f[0], window_[k]), Weighted(f[1], window_[k]));
    Vote(c, value);
  }

  void Three(const HaarFeature* f, const HaarClassifier& c) {
    Vector value[kVectors];
    for (int k = 0; k < kVectors; k++) {
      value[k] = V::add(Weighted(f[0], window_[k]), Weighted(f[1], window_[k]));
      value[k] = V::add(value[k], Weighted(f[2], window_[k]));
    }
    Vote(c, value);
  }

  void Any(const HaarFeature* f, const HaarClassifier& c) {
    Vector value[kVectors];
    for (int k = 0; k < kVectors; k++) {
      value[k] = Weighted(f[0], window_[k]);
      for (int i = 1; i < c.features; i++) value[k] = V::add(value[k], Weighted(f[i], window_[k]));
    }
    Vote(c, value);
  }

  const Ipp32f* window_[kVectors];
  Vector norm_[kVectors];
  Vector sum_[kVectors];
};

template <class V, int kBlocks>
void runStage(const HaarStage& stage, const Ipp32f* sum, const Ipp32f* norm, HaarBlock* blocks) {
  constexpr int kPerBlock = HaarBlock::kPositions / V::kLanes;
  HaarStageRun<V, kBlocks * kPerBlock> run(sum, norm, blocks);
  run.Run(stage);
  for (int k = 0; k < kBlocks * kPerBlock; k++) {
    blocks[k / kPerBlock].lanes &= ~(run.Failed(k, stage.threshold) << (k % kPerBlock * V::kLanes));
  }
}

template <class V, int kBlocksAtOnce>
void runStageBlocks(const HaarStage& stage, const Ipp32f* sum, const Ipp32f* norm, HaarBlock* blocks, int count) {
  int i = 0;
  for (; i + kBlocksAtOnce <= count; i += kBlocksAtOnce) runStage<V, kBlocksAtOnce>(stage, sum, norm, blocks + i);
  for (; i < count; i++) runStage<V, 1>(stage, sum, norm, blocks + i);
}

}  // namespace
