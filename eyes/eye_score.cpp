#include "eyes/eye_score.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>

#include "eyes/eye_window.h"

namespace {

constexpr std::size_t kSpan = kEyeSpan;
constexpr std::size_t kRows = kSpan * kSpan;
constexpr int kBands = TEyeHMaxFeatures::kBands;
constexpr int kOrientations = TEyeHMaxFeatures::kOrientations;

// A value of at most 1.0, so a bin from 0 to 12.
int binOf(float value) { return static_cast<int>(value * 12.0f); }

// Places in the flat table.
constexpr std::size_t kC1Start = 8 * 2 * kRows * kEyeBins;
constexpr std::size_t kXStart = kC1Start + kEyeBins;
constexpr std::size_t kYStart = kXStart + 3;
constexpr std::size_t kLbpStart = kYStart + 6;
constexpr std::size_t kLbpSize = kRows * kLbpCodes;

const float* flat(const eyeFeature& model) { return reinterpret_cast<const float*>(&model); }

std::size_t index(int i) { return static_cast<std::size_t>(i); }

std::size_t third(int i) { return index(static_cast<int>(static_cast<float>(i) * 0.03125f * 3.0f)); }

float positionWeight(const float* weights, int x, int y) {
  return weights[kXStart + third(x)] + weights[kYStart + third(y)];
}

// Adds the patterns of the window reduced by `level` halvings around a place of its own pixels.
void addPatterns(float& score, const int* codes, int width, int level, int x, int y, const float* weights) {
  const int side = width >> level;
  const int cx = x >> level, cy = y >> level;
  for (int px = std::max(cx - kEyeReach, 0); px <= std::min(cx + kEyeReach, side - 1); ++px) {
    for (int py = std::max(cy - kEyeReach, 0); py <= std::min(cy + kEyeReach, side - 1); ++py) {
      const std::size_t row = index(px - cx + kEyeReach) * kSpan + index(py - cy + kEyeReach);
      score += weights[row * kLbpCodes + index(codes[px + py * side])];
    }
  }
}

void addS1(float& score, const TEyeHMaxFeatures::TMap& response, int x, int y, const float* weights) {
  constexpr int kSide = TEyeHMaxFeatures::kSide;
  for (int px = std::max(x - kEyeReach, 0); px <= std::min(x + kEyeReach, kSide - 1); ++px) {
    for (int py = std::max(y - kEyeReach, 0); py <= std::min(y + kEyeReach, kSide - 1); ++py) {
      const std::size_t row = index(px - x + kEyeReach) * kSpan + index(py - y + kEyeReach);
      score += weights[row * kEyeBins + index(binOf(response[index(px + kSide * py)]))];
    }
  }
}

}  // namespace

float eyeCalcValue(int width, int height, const TEyeHMaxFeatures* hmax, const int* lbp0, const int* lbp1,
                   const int* lbp2, int x, int y, const eyeFeature* model) {
  const float* weights = flat(*model);
  const int cx = std::clamp(x, 0, width - 1), cy = std::clamp(y, 0, height - 1);
  const std::size_t at = index(cx + TEyeHMaxFeatures::kSide * cy);
  float score = 0;
  addPatterns(score, lbp0, width, 0, x, y, weights + kLbpStart);
  addPatterns(score, lbp1, width, 1, x, y, weights + kLbpStart + kLbpSize);
  addPatterns(score, lbp2, width, 2, x, y, weights + kLbpStart + 2 * kLbpSize);
  for (int b = 0; b < kBands; ++b) {
    for (int o = 0; o < kOrientations; ++o) {
      addS1(score, hmax->s1Response(o, 2 * b), x, y, weights + index(o * kBands + b) * kRows * kEyeBins);
    }
  }
  for (int b = 0; b < kBands; ++b) {
    for (int o = 0; o < kOrientations; ++o) score += weights[kC1Start + index(binOf(hmax->c1Feature(o, b)[at]))];
  }
  return score + positionWeight(weights, cx, cy);
}

namespace {

// The window's features as indices into rows of weights, column by column. Each column continues above and below by
// entries of weight 0, which stand for places outside the window: adding 0 changes no sum.
struct TColumns {
  static constexpr std::size_t kSide = kEyeWindowSide;
  // Reduced patterns are repeated, so that a step of one row in the window is one entry at every size.
  static constexpr std::size_t kPatternEntries = kSide + 4 * 2 * kEyeReach;
  static constexpr std::size_t kS1Entries = kSide + 2 * kEyeReach;
  std::uint8_t patterns[3][kSide][kPatternEntries];
  std::uint8_t s1[kBands][kOrientations][kSide][kS1Entries];
};

constexpr std::uint8_t kNoPattern = kLbpCodes;
constexpr std::uint8_t kNoBin = kEyeBins + 1;

void fillPatterns(const int* codes, int level, TColumns& columns) {
  const std::size_t side = TColumns::kSide >> level;
  for (std::size_t x = 0; x < side; ++x) {
    std::uint8_t* column = columns.patterns[level][x];
    std::fill_n(column, TColumns::kPatternEntries, kNoPattern);
    for (std::size_t y = 0; y < TColumns::kSide; ++y) {
      column[y + (std::size_t{kEyeReach} << level)] = static_cast<std::uint8_t>(codes[x + side * (y >> level)]);
    }
  }
}

void fillBins(const TEyeHMaxFeatures::TMap& response, std::uint8_t (&columns)[TColumns::kSide][TColumns::kS1Entries]) {
  for (std::size_t x = 0; x < TColumns::kSide; ++x) {
    std::fill_n(columns[x], TColumns::kS1Entries, kNoBin);
    for (std::size_t y = 0; y < TColumns::kSide; ++y) {
      columns[x][y + kEyeReach] = static_cast<std::uint8_t>(binOf(response[x + TColumns::kSide * y]));
    }
  }
}

void fillColumns(const TEyeWindow& window, TColumns& columns) {
  fillPatterns(window.lbp0, 0, columns);
  fillPatterns(window.lbp1, 1, columns);
  fillPatterns(window.lbp2, 2, columns);
  for (int b = 0; b < kBands; ++b) {
    for (int o = 0; o < kOrientations; ++o) fillBins(window.hmax.s1Response(o, 2 * b), columns.s1[b][o]);
  }
}

// Scores of a few neighbouring places of one column, added up side by side.
struct TLanes {
  static constexpr std::size_t kCount = 8;
  float sums[kCount] = {};

  void add(const float* row, const std::uint8_t* entries) {
    for (std::size_t l = 0; l < kCount; ++l) sums[l] += row[entries[l]];
  }
};

void addPatternLanes(TLanes& lanes, const TColumns& columns, const TEyeRows& rows, int level, int x, std::size_t y) {
  const int side = kEyeWindowSide >> level, cx = x >> level;
  for (int px = std::max(cx - kEyeReach, 0); px <= std::min(cx + kEyeReach, side - 1); ++px) {
    const auto& table = rows.patterns[level][px - cx + kEyeReach];
    const std::uint8_t* column = columns.patterns[level][px] + y;
    for (std::size_t dy = 0; dy < kSpan; ++dy) lanes.add(table[dy], column + (dy << level));
  }
}

void addS1Lanes(TLanes& lanes, const TColumns& columns, const TEyeRows& rows, int b, int o, int x, std::size_t y) {
  for (int px = std::max(x - kEyeReach, 0); px <= std::min(x + kEyeReach, kEyeWindowSide - 1); ++px) {
    const auto& table = rows.s1[b][o][px - x + kEyeReach];
    const std::uint8_t* column = columns.s1[b][o][px] + y;
    for (std::size_t dy = 0; dy < kSpan; ++dy) lanes.add(table[dy], column + dy);
  }
}

// C1 and position of one place, on top of the other sums.
float finish(float score, const TEyeHMaxFeatures& hmax, const float* weights, int x, int y) {
  const std::size_t at = index(x + kEyeWindowSide * y);
  for (int b = 0; b < kBands; ++b) {
    for (int o = 0; o < kOrientations; ++o) score += weights[kC1Start + index(binOf(hmax.c1Feature(o, b)[at]))];
  }
  return score + positionWeight(weights, x, y);
}

}  // namespace

TEyeRows::TEyeRows(const eyeFeature& eyes) : model(eyes) {
  const float* weights = flat(model);
  for (std::size_t i = 0; i < 3 * kRows; ++i) {
    float* row = &patterns[0][0][0][0] + i * kPatternRow;
    std::copy_n(weights + kLbpStart + i * kLbpCodes, kLbpCodes, row);
    row[kNoPattern] = 0;
  }
  for (std::size_t map = 0; map < std::size_t{kBands} * kOrientations; ++map) {
    const std::size_t b = map % kBands, o = map / kBands;
    for (std::size_t i = 0; i < kRows; ++i) {
      float* row = &s1[b][o][0][0][0] + i * kS1Row;
      std::copy_n(weights + (map * kRows + i) * kEyeBins, kEyeBins + 1, row);
      row[kNoBin] = 0;
    }
  }
}

void ScoreEyeWindow(const TEyeWindow& window, const TEyeRows& rows, float* scores) {
  const float* weights = flat(rows.model);
  const auto columns = std::make_unique_for_overwrite<TColumns>();
  fillColumns(window, *columns);
  for (int x = kFirstScoredColumn; x <= kLastScoredColumn; ++x) {
    for (std::size_t y = 0; y < TColumns::kSide; y += TLanes::kCount) {
      TLanes lanes;
      for (int level = 0; level < 3; ++level) addPatternLanes(lanes, *columns, rows, level, x, y);
      for (int b = 0; b < kBands; ++b) {
        for (int o = 0; o < kOrientations; ++o) addS1Lanes(lanes, *columns, rows, b, o, x, y);
      }
      for (std::size_t l = 0; l < TLanes::kCount; ++l) {
        const int row = static_cast<int>(y + l);
        scores[index(x + kEyeWindowSide * row)] = finish(lanes.sums[l], window.hmax, weights, x, row);
      }
    }
  }
}
