// All stages of a cascade over one region at once: the survivors go from stage to stage as a list, not as a
// mask that every stage walks. They are those that ippiApplyHaarClassifier_32f_C1R, stage after stage,
// leaves in the mask.
#pragma once

#include <vector>

#include "primitives/haar_kernels.h"

struct IppiHaarClassifier_32f;

class HaarCascade {
 public:
  struct Position {
    int x;
    int y;
  };
  // Elements past the last value of both maps that may be read, without effect on the result.
  static constexpr int kSlack = HaarBlock::kPositions;

  // Neither array is copied; both hold `stageCount` entries.
  HaarCascade(const IppiHaarClassifier_32f* const* states, const float* thresholds, int stageCount);

  // Sets the floats from row to row of the maps that follow. A stage is laid out for the pitch when the
  // first survivor reaches it.
  void SetPitch(int pitch);
  int Pitch() const { return pitch_; }

  // Appends the positions of `roi` that pass all stages, row by row, `top` added to their rows. The rows
  // should be a band of the picture: the list of its positions is held in memory. Throws std::length_error
  // for a pitch whose windows are beyond a 32-bit index.
  void Scan(const float* sum, const float* norm, IppiSize roi, int top, std::vector<Position>& survivors);

 private:
  int Cover(IppiSize roi);
  int Repack(int count);
  const HaarStage& Stage(int s);

  const IppiHaarClassifier_32f* const* states_;
  const float* thresholds_;
  const int stageCount_;
  int pitch_ = 0;
  int placedStages_ = 0;
  std::vector<std::vector<HaarFeature>> placed_;
  std::vector<HaarStage> stages_;
  std::vector<HaarBlock> blocks_;
  std::vector<HaarBlock> repacked_;
};
