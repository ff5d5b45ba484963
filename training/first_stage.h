// The first stage: two classifiers are given with all their values, and so is the threshold. The third is free.
#pragma once

#include <vector>

#include "training/boosting.h"

// Tries every two-rectangle feature and every pair of leaf values that makes a difference, and takes the classifier
// that lets the fewest negatives through while the stage keeps `plan.keep` of the positives (the first `positives`
// windows of the table).
Stage trainFirstStage(const std::vector<CandidateFeature>& features, const FeatureTable& table, std::size_t positives,
                      const StagePlan& plan, const std::vector<WeakClassifier>& given, unsigned threads);
