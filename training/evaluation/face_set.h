// Choosing what to measure on.
#pragma once

#include <string>
#include <vector>

#include "training/face_labels.h"

namespace evaluation {

// The faces kept out of training whose file name starts with `folder`.
std::vector<FaceLabel> validationFaces(const std::vector<FaceLabel>& labels, const std::string& folder);

// Whether a person of the train split is left out of the training of the facial points too, so that choices can be made
// without a look at the val split. Depends on the name alone; 8 % of the people.
bool keptForChoices(const std::string& person);

// The faces of these people whose file name starts with `folder`.
std::vector<FaceLabel> choiceFaces(const std::vector<FaceLabel>& labels, const std::string& folder);

// Every tenth file of a folder in sorted order, which training leaves out. Throws std::runtime_error.
std::vector<std::string> heldOutBackgrounds(const std::string& folder);

// At most `limit` entries (0 for all), taken at even distances so that every source stays represented.
template <typename T>
std::vector<T> thinned(const std::vector<T>& all, std::size_t limit) {
  if (limit == 0 || all.size() <= limit) return all;
  std::vector<T> chosen;
  for (std::size_t i = 0; i < limit; ++i) chosen.push_back(all[i * all.size() / limit]);
  return chosen;
}

}  // namespace evaluation
