// How far found eyes are from the labelled ones, over many faces.
#pragma once

#include <array>
#include <vector>

#include "training/face_labels.h"

namespace evaluation {

using Eyes = std::array<LabelledPoint, 2>;  // smaller x first

Eyes turnedEyes(const Eyes& eyes, const LabelledPoint& about, double degrees);

// In units of the distance of the true pupils.
struct EyeError {
  Eyes offset;   // found less true, positive to the right and downwards
  double worse;  // distance of the eye that is farther off
};

EyeError eyeErrorOf(const Eyes& truth, const Eyes& found);

class EyeTally {
 public:
  void add(const EyeError& error) { errors_.push_back(error); }
  void add(const EyeTally& other) { errors_.insert(errors_.end(), other.errors_.begin(), other.errors_.end()); }
  std::size_t faces() const { return errors_.size(); }
  // Share of the faces whose worse eye is off by at most `limit`.
  double within(double limit) const;
  // Mean distance of all eyes, and mean offset of one eye.
  double meanDistance() const;
  LabelledPoint meanOffset(std::size_t eye) const;

 private:
  std::vector<EyeError> errors_;
};

}  // namespace evaluation
