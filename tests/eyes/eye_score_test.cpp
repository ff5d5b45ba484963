#include "eyes/eye_score.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <random>
#include <vector>

#include "eyes/find_eye.h"
#include "image/TIppiImage.h"
#include "tests/eyes/window_pictures.h"

namespace {

// Every weight of one place in the order of the sum, taken from the flat table by running offsets.
std::vector<float> weightsOf(const TEyeWindow& window, const eyeFeature& model, int x, int y) {
  const auto* table = reinterpret_cast<const float*>(&model);
  std::vector<float> weights;
  const auto take = [&](int place) { weights.push_back(table[place]); };
  const auto around = [](int cx, int cy, int side, auto visit) {
    for (int dx = 0; dx < 11; ++dx) {
      for (int dy = 0; dy < 11; ++dy) {
        const int px = cx + dx - 5, py = cy + dy - 5;
        if (px >= 0 && py >= 0 && px < side && py < side) visit(dx, dy, px, py);
      }
    }
  };
  const int* codes[] = {window.lbp0, window.lbp1, window.lbp2};
  for (int level = 0; level < 3; ++level) {
    const int side = 32 >> level, start = 23253 + level * 7139;
    around(x / (1 << level), y / (1 << level), side,
           [&](int dx, int dy, int px, int py) { take(start + dx * 649 + dy * 59 + codes[level][px + py * side]); });
  }
  for (int b = 0; b < 2; ++b) {
    for (int o = 0; o < 8; ++o) {
      around(x, y, 32, [&](int dx, int dy, int px, int py) {
        const int bin = static_cast<int>(window.hmax.s1Response(o, 2 * b)[static_cast<std::size_t>(px + 32 * py)] * 12);
        take(o * 2904 + b * 1452 + dx * 132 + dy * 12 + bin);
      });
    }
  }
  for (int b = 0; b < 2; ++b) {
    for (int o = 0; o < 8; ++o) {
      take(23232 + static_cast<int>(window.hmax.c1Feature(o, b)[static_cast<std::size_t>(x + 32 * y)] * 12));
    }
  }
  weights.push_back(table[23244 + x * 3 / 32] + table[23247 + y * 3 / 32]);
  return weights;
}

float sumOf(const std::vector<float>& weights) {
  float sum = 0;
  for (const float weight : weights) sum += weight;
  return sum;
}

std::uint32_t bits(float value) {
  std::uint32_t result;
  std::memcpy(&result, &value, sizeof result);
  return result;
}

void expectScores(const TEyeWindow& window, const eyeFeature& model) {
  float scores[32 * 32] = {};
  ScoreEyeWindow(window, *std::make_unique<TEyeRows>(model), scores);
  for (int x = 2; x <= 29; ++x) {
    for (int y = 0; y < 32; ++y) {
      const float single = eyeCalcValue(32, 32, &window.hmax, window.lbp0, window.lbp1, window.lbp2, x, y, &model);
      ASSERT_EQ(bits(single), bits(sumOf(weightsOf(window, model, x, y)))) << x << ", " << y;
      ASSERT_EQ(bits(scores[x + 32 * y]), bits(single)) << x << ", " << y;
    }
  }
}

TEST(EyeScore, IsTheSumOfItsWeightsInOrder) {
  std::mt19937 random(21);
  for (int round = 0; round < 3; ++round) {
    const auto window = texturedEyeWindow(random);
    const auto model = randomModel(random);
    expectScores(*window, *model);
  }
}

// All shares of a black window are 1, which is one bin more than a row has: each row's sum goes on in the next row.
TEST(EyeScore, TheBinOfOneIsTheNextRowsFirst) {
  std::mt19937 random(22);
  TIppiImage black(imGray8);
  black.AllocNew(128, 128);
  TEyeWindow window(testPrototype());
  PrepareEyeWindow(&black, false, window);
  ASSERT_EQ(window.hmax.s1Response(7, 2)[500], 1.0f);
  const auto model = randomModel(random);
  expectScores(window, *model);
}

TEST(BestPlace, TheFirstColumnAndThenTheFirstRowWinsATie) {
  float scores[32 * 32] = {};
  int x = -1, y = -1;
  BestEyePlace(scores, &x, &y);
  EXPECT_EQ(x, 3);
  EXPECT_EQ(y, 0);

  scores[20 + 32 * 5] = scores[12 + 32 * 30] = scores[12 + 32 * 9] = -1;
  BestEyePlace(scores, &x, &y);
  EXPECT_EQ(x, 11) << "the sum of three columns is as low one column before";
  EXPECT_EQ(y, 9);
}

TEST(BestPlace, ThreeColumnsCountAndTheOuterOnesAreNotCompared) {
  float scores[32 * 32] = {};
  int x = -1, y = -1;
  scores[10 + 32 * 4] = -2;  // alone
  scores[20 + 32 * 7] = scores[21 + 32 * 7] = scores[22 + 32 * 7] = -1;
  BestEyePlace(scores, &x, &y);
  EXPECT_EQ(x, 21);
  EXPECT_EQ(y, 7);
  scores[29 + 32 * 31] = -100;
  BestEyePlace(scores, &x, &y);
  EXPECT_EQ(x, 28);
  EXPECT_EQ(y, 31);
  scores[1 + 32 * 3] = -1000;
  BestEyePlace(scores, &x, &y);
  EXPECT_EQ(x, 28) << "column 1 is no neighbour of a column that is compared";
  scores[30 + 32 * 20] = -1000;
  BestEyePlace(scores, &x, &y);
  EXPECT_EQ(x, 28) << "nor is column 30";
}

}  // namespace
