// The pictures and face windows that the cascade is trained on.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "training/window_samples.h"

// The pictures of a folder without faces. One in ten of the sorted files is kept out of training, to count false
// faces on.
std::vector<TrainingPicture> loadBackgrounds(const std::string& folder);

// The faces of the train split; `folder` holds labels.csv.
std::vector<TrainingPicture> loadPortraits(const std::string& folder);

// `copies` jittered windows of each face. They depend on the seed, not on the number of threads.
std::vector<Window> makePositives(std::vector<TrainingPicture>& portraits, const FaceJitter& jitter, int copies,
                                  std::uint32_t seed, unsigned threads);
