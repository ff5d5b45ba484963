#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <random>

#include "api/vizl_api.h"
#include "features/TGenetic.h"
#include "features/TNeuroLocator.h"
#include "features/random.h"
#include "features/sort_ranked.h"
#include "tests/features/reference_search.h"

namespace {

std::vector<RankedMember> ranked(const std::vector<float>& values, std::vector<TNeuroChromosome>& members) {
  members.resize(values.size());
  std::vector<RankedMember> result;
  for (std::size_t i = 0; i < values.size(); ++i) result.push_back({values[i], &members[i]});
  return result;
}

TEST(SortRanked, OrderOfTiesIsThatOfTheSteps) {
  std::mt19937 random(3);
  std::vector<TNeuroChromosome> members;
  for (int round = 0; round < 400; ++round) {
    const std::size_t count = 1 + random() % 300, kinds = 1 + random() % (round % 3 ? 5 : 300);
    std::vector<float> values(count);
    for (float& value : values) value = static_cast<float>(random() % kinds);
    if (round % 7 == 0) std::sort(values.begin(), values.end());
    std::vector<RankedMember> whole = ranked(values, members), partly = whole;
    std::vector<int> order(count);
    for (std::size_t i = 0; i < count; ++i) order[i] = static_cast<int>(i);
    const int last = static_cast<int>(count) - 1;
    referenceSort(values, order, 0, last);
    SortRanked(whole.data(), 0, last, last + 1);
    const std::size_t wanted = random() % (count + 1);
    SortRanked(partly.data(), 0, last, static_cast<int>(wanted));
    for (std::size_t i = 0; i < count; ++i) {
      ASSERT_EQ(whole[i].value, values[i]);
      ASSERT_EQ(whole[i].member, &members[static_cast<std::size_t>(order[i])]) << round;
      if (i < wanted) {
        ASSERT_EQ(partly[i].member, whole[i].member) << round << ", wanted " << wanted;
      }
    }
  }
}

TEST(SortRanked, EndsWithValuesThatAreNoNumbers) {
  std::mt19937 random(5);
  std::vector<TNeuroChromosome> members;
  for (int round = 0; round < 200; ++round) {
    std::vector<float> values(1 + random() % 60);
    for (float& value : values) value = random() % 3 ? static_cast<float>(random() % 9) : NAN;
    std::vector<RankedMember> list = ranked(values, members);
    SortRanked(list.data(), 0, static_cast<int>(list.size()) - 1, static_cast<int>(list.size()));
    std::vector<TNeuroChromosome*> left;
    for (const RankedMember& entry : list) left.push_back(entry.member);
    std::sort(left.begin(), left.end());
    for (std::size_t i = 0; i < left.size(); ++i) ASSERT_EQ(left[i], &members[i]) << "lost";
  }
}

class Genetic : public testing::Test {
 protected:
  void SetUp() override {
    fillFace(face_, 256, 256, 2);
    locator_.Scores.Begin(face_);
    locator_.ImageWidth = locator_.ImageHeight = 256;
    locator_.EvenCoordinates = true;
    result_.Assign(locator_.BaseGrid);
    locator_.Result = &result_;
  }
  void TearDown() override { NeedInterrupt = 0; }

  SearchModel model_ = makeSearchModel(31);
  TIppiImage face_;
  TGrid result_;
  TNeuroLocator locator_{model_.Data()};
};

TEST_F(Genetic, TinyPopulationsEndTheirSearch) {
  for (const int size : {-3, 0, 1, 2, 3, 4, 9}) {
    TGenetic genetic(size, &locator_);
    genetic.Solve(0.00001F);
    EXPECT_EQ(genetic.Population.size(), static_cast<std::size_t>(std::max(size, 0)));
    EXPECT_EQ(genetic.Generation, size > 0 ? 11 : 0);
  }
}

TEST_F(Genetic, InterruptEndsAfterOneGenerationWithTheBestSoFar) {
  NeedInterrupt = 1;
  TGenetic genetic(60, &locator_);
  std::srand(1);
  genetic.Solve(0.00001F);
  EXPECT_EQ(genetic.Generation, 1);
  const auto& members = genetic.Population;
  ASSERT_EQ(members.size(), 60u);
  for (std::size_t i = 1; i < members.size(); ++i) EXPECT_GE(members[i - 1]->Value, members[i]->Value);
  TNeuroChromosome& best = *members[0];
  const float value = best.Value;
  best.CalcValue();
  EXPECT_EQ(best.Value, value);
  for (std::size_t k = 0; k < kNodes; ++k) {
    EXPECT_EQ(result_.Nodes[k].x, locator_.Grid1L[2 * k]);
    EXPECT_EQ(result_.Nodes[k].y, locator_.Grid1L[2 * k + 1]);
  }
}

}  // namespace
