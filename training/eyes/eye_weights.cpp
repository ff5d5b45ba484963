#include "training/eyes/eye_weights.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "eyes/eye_score.h"

namespace {

constexpr int kReach = kEyeReach;
constexpr int kSide = EyeSample::kSide;
constexpr std::size_t kLanes = 8;  // places of one column that are worked on together

std::size_t index(int i) { return static_cast<std::size_t>(i); }

// Codes of one size of the window by columns, with "outside" above and below. Reduced sizes repeat each entry, so
// that one row of the window is one entry at every size.
struct PatternColumns {
  PatternColumns(const std::uint8_t* codes, int reduction) : level(reduction) {
    const int side = kSide >> level;
    std::memset(entries, 59, sizeof entries);
    for (int x = 0; x < side; ++x) {
      for (int y = 0; y < kSide; ++y) entries[x][y + (kReach << level)] = codes[x + side * (y >> level)];
    }
  }

  int level;
  std::uint8_t entries[kSide][kSide + 8 * kReach];
};

// Calls work(row of weights, entries of the lanes) for all rows of one size around the places (x, y...).
template <class Work>
void forPatternRows(const PatternColumns& columns, int x, int y, Work work) {
  const int cx = x >> columns.level, side = kSide >> columns.level;
  for (int px = std::max(cx - kReach, 0); px <= std::min(cx + kReach, side - 1); ++px) {
    for (int dy = 0; dy < 11; ++dy) {
      const std::size_t row = (index(columns.level) * 11 + index(px - cx + kReach)) * 11 + index(dy);
      work(row * EyeWeights::kPatternRow, columns.entries[px] + y + (dy << columns.level));
    }
  }
}

// Calls work(index of the weight, place) for all scored places near a response.
template <class Work>
void forPlacesNear(const S1Entry& entry, Work work) {
  const int left = std::max(entry.x - kReach, kFirstScoredColumn),
            right = std::min(entry.x + kReach, kLastScoredColumn);
  for (int x = left; x <= right; ++x) {
    for (int y = std::max(entry.y - kReach, 0); y <= std::min(entry.y + kReach, kSide - 1); ++y) {
      const std::size_t row = (entry.map * 11 + index(entry.x - x + kReach)) * 11 + index(entry.y - y + kReach);
      work(EyeWeights::kS1Start + row * EyeWeights::kS1Row + entry.bin, index(x + kSide * y));
    }
  }
}

std::size_t third(int i) { return index(static_cast<int>(static_cast<float>(i) * 0.03125f * 3.0f)); }

}  // namespace

bool EyeWeights::isFixed(std::size_t i) {
  if (i < kS1Start) return i % kPatternRow == kPatternRow - 1;
  return i < kC1Start && (i - kS1Start) % kS1Row == 0;
}

eyeFeature EyeWeights::toModel() const {
  eyeFeature model = {};
  float* patterns[] = {&model.lbpWeights0[0][0][0], &model.lbpWeights1[0][0][0], &model.lbpWeights2[0][0][0]};
  for (std::size_t i = 0; i < 3 * kRows; ++i) {
    std::copy_n(&values[i * kPatternRow], kLbpCodes, patterns[i / kRows] + i % kRows * kLbpCodes);
  }
  for (std::size_t map = 0; map < 16; ++map) {
    for (std::size_t i = 0; i < kRows; ++i) {
      std::copy_n(&values[kS1Start + (map * kRows + i) * kS1Row], kEyeBins,
                  &model.s1Weights[map % 8][map / 8][i / 11][i % 11][0]);
    }
  }
  // With c1Weights[0] at 0 the last S1 row's bin 12 counts nothing, as that of the others.
  for (std::size_t i = 0; i < kEyeBins; ++i) model.c1Weights[i] = values[kC1Start + i] - values[kC1Start];
  const float bin12 = values[kC1Start + kEyeBins] - values[kC1Start];
  for (std::size_t i = 0; i < 3; ++i) {
    model.xWeights[i] = values[kXStart + i] - values[kXStart] + bin12;
    model.yWeights[i] = values[kYStart + i];
  }
  return model;
}

void scoreSample(const EyeWeights& weights, const EyeSample& sample, float* scores) {
  const float* w = weights.values.data();
  const PatternColumns columns[] = {{sample.patterns0, 0}, {sample.patterns1, 1}, {sample.patterns2, 2}};
  for (int x = kFirstScoredColumn; x <= kLastScoredColumn; ++x) {
    for (int y = 0; y < kSide; y += kLanes) {
      float sums[kLanes] = {};
      for (const PatternColumns& size : columns) {
        forPatternRows(size, x, y, [&](std::size_t row, const std::uint8_t* entries) {
          for (std::size_t l = 0; l < kLanes; ++l) sums[l] += w[row + entries[l]];
        });
      }
      for (std::size_t l = 0; l < kLanes; ++l) {
        const std::size_t at = index(x + kSide * y) + kSide * l;
        for (std::uint8_t bin : sample.c1[at]) sums[l] += w[EyeWeights::kC1Start + bin];
        const std::size_t row = index(y) + l;
        scores[at] =
            sums[l] + w[EyeWeights::kXStart + third(x)] + w[EyeWeights::kYStart + third(static_cast<int>(row))];
      }
    }
  }
  for (const S1Entry& entry : sample.s1) {
    forPlacesNear(entry, [&](std::size_t weight, std::size_t at) { scores[at] += w[weight]; });
  }
}

void addGradient(const EyeSample& sample, const float* slopes, float negligible, std::vector<float>& gradient) {
  float* g = gradient.data();
  const PatternColumns columns[] = {{sample.patterns0, 0}, {sample.patterns1, 1}, {sample.patterns2, 2}};
  for (int x = kFirstScoredColumn; x <= kLastScoredColumn; ++x) {
    for (int y = 0; y < kSide; y += kLanes) {
      float own[kLanes], largest = 0;
      for (std::size_t l = 0; l < kLanes; ++l) {
        own[l] = slopes[index(x + kSide * y) + kSide * l];
        largest = std::max(largest, std::fabs(own[l]));
      }
      if (largest < negligible) continue;
      for (const PatternColumns& size : columns) {
        forPatternRows(size, x, y, [&](std::size_t row, const std::uint8_t* entries) {
          for (std::size_t l = 0; l < kLanes; ++l) g[row + entries[l]] += own[l];
        });
      }
      for (std::size_t l = 0; l < kLanes; ++l) {
        for (std::uint8_t bin : sample.c1[index(x + kSide * y) + kSide * l]) g[EyeWeights::kC1Start + bin] += own[l];
        g[EyeWeights::kXStart + third(x)] += own[l];
        g[EyeWeights::kYStart + third(y + static_cast<int>(l))] += own[l];
      }
    }
  }
  for (const S1Entry& entry : sample.s1) {
    forPlacesNear(entry, [&](std::size_t weight, std::size_t at) { g[weight] += slopes[at]; });
  }
}
