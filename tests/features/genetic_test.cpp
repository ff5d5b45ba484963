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

// The next numbers of the sequence that a seed begins.
std::vector<int> sequence(unsigned seed, int count) {
  std::srand(seed);
  std::vector<int> numbers;
  for (int i = 0; i < count; ++i) numbers.push_back(std::rand());
  std::srand(seed);
  return numbers;
}

double unit(int number) { return number / 2147483647.0; }

TEST(Random, DrawsFromTheSharedSequenceInOrder) {
  for (unsigned seed = 1; seed < 200; ++seed) {
    const std::vector<int> numbers = sequence(seed, 40);
    EXPECT_EQ(rand_u(), unit(numbers[0]));
    EXPECT_EQ(rand_i(36), static_cast<int>(unit(numbers[1]) * 36));
    std::size_t next = 2;
    double u = 0, s = 2;
    while (s >= 1) {
      u = 2 * unit(numbers[next++]) - 1;
      const double v = 2 * unit(numbers[next++]) - 1;
      s = u * u + v * v;
    }
    EXPECT_EQ(rand_g(3.0F, 0.21F), std::sqrt(-2 * std::log(s) / s) * u * static_cast<double>(0.21F) + 3.0);
    EXPECT_EQ(std::rand(), numbers[next]);
  }
}

TEST(Random, DeviatesAreNormal) {
  std::srand(4);
  double sum = 0, squares = 0;
  constexpr int kCount = 20000;
  for (int i = 0; i < kCount; ++i) {
    const double value = rand_g(2, 3);
    sum += value;
    squares += (value - 2) * (value - 2);
  }
  EXPECT_NEAR(sum / kCount, 2, 0.1);
  EXPECT_NEAR(squares / kCount, 9, 0.4);
}

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

// By hand from the steps: equal values change places about the middle, in halves again and again.
TEST(SortRanked, EqualValuesTakeAFixedOrder) {
  std::vector<TNeuroChromosome> members;
  std::vector<RankedMember> list = ranked(std::vector<float>(5, 1.0F), members);
  SortRanked(list.data(), 0, 4, 5);
  std::vector<std::ptrdiff_t> order;
  for (const RankedMember& entry : list) order.push_back(entry.member - members.data());
  // 4 3 2 1 0; then 0..1 again: 3 4; then 3..4 again: 0 1.
  EXPECT_EQ(order, (std::vector<std::ptrdiff_t>{3, 4, 2, 0, 1}));
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

TEST_F(Genetic, FreshMembersAreZeroAndRandomizeDrawsIndexByIndex) {
  TGenetic genetic(3, &locator_);
  ASSERT_EQ(genetic.Population.size(), 3u);
  TNeuroChromosome& member = *genetic.Population[1];
  EXPECT_TRUE(std::all_of(member.Parameters.begin(), member.Parameters.end(), [](float p) { return p == 0; }));
  std::srand(8);
  member.Randomize();
  std::srand(8);
  for (std::size_t i = 0; i < 32; ++i) {
    const double range = static_cast<double>(eigenvalues[i]);
    EXPECT_EQ(member.Parameters[i], static_cast<float>(2 * range * rand_u() - range));
  }
  EXPECT_EQ(member.Parameters[32], static_cast<float>(rand_g(0, 4.8F)));
  EXPECT_EQ(member.Parameters[33], static_cast<float>(rand_g(0, 4.8F)));
  EXPECT_EQ(member.Parameters[34], static_cast<float>(1 + rand_g(0, 0.21F)));
  EXPECT_EQ(member.Parameters[35], static_cast<float>(1 + rand_g(0, 0.21F)));
  EXPECT_EQ(member.Parameters[36], static_cast<float>(rand_g(0, 10.5F) * 3.1415927410125732 / 180));
  const auto before = member.Parameters;
  member.RandomizeParameter(37);
  EXPECT_EQ(member.Parameters, before);
}

TEST_F(Genetic, MutationRedrawsOneParameterButNotTheRotation) {
  TGenetic genetic(1, &locator_);
  TNeuroChromosome& member = *genetic.Population[0];
  std::array<int, kShapeParameters> redrawn{};
  for (unsigned seed = 0; seed < 3000; ++seed) {
    member.Parameters.fill(1000.0F);
    const std::vector<int> numbers = sequence(seed, 1);
    member.Mutate();
    const auto index = static_cast<std::size_t>(36 * unit(numbers[0]));
    for (std::size_t i = 0; i < kShapeParameters; ++i) ASSERT_EQ(member.Parameters[i] != 1000.0F, i == index);
    ++redrawn[index];
  }
  EXPECT_EQ(redrawn[36], 0);
  EXPECT_GT(*std::min_element(redrawn.begin(), redrawn.end() - 1), 40);
}

TEST_F(Genetic, CrossoverLiesOnTheLineBetweenTheParents) {
  TGenetic genetic(2, &locator_);
  TNeuroChromosome &child = *genetic.Population[0], &other = *genetic.Population[1];
  for (unsigned seed = 1; seed < 50; ++seed) {
    child.Randomize();
    other.Randomize();
    const auto mine = child.Parameters;
    const auto t = static_cast<float>(unit(sequence(seed, 1)[0]));
    child.Crossingover(&other);
    for (std::size_t i = 0; i < kShapeParameters; ++i) {
      EXPECT_EQ(child.Parameters[i], (1 - t) * other.Parameters[i] + t * mine[i]);
    }
  }
  child.Parameters = other.Parameters;
  const auto same = other.Parameters;
  child.Crossingover(&other);
  for (std::size_t i = 0; i < kShapeParameters; ++i) EXPECT_FLOAT_EQ(child.Parameters[i], same[i]);
}

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

TEST_F(Genetic, BestNeverGetsWorseAndAllValuesAreTheirOwn) {
  TGenetic genetic(100, &locator_);
  std::srand(2);
  genetic.Solve(0.00001F);
  const float best = genetic.Population[0]->Value;
  for (TNeuroChromosome* member : genetic.Population) {
    const float value = member->Value;
    EXPECT_LE(value, best);
    member->CalcValue();
    EXPECT_EQ(member->Value, value);
  }
  NeedInterrupt = 1;
  TGenetic shorter(100, &locator_);
  std::srand(2);
  shorter.Solve(0.00001F);
  EXPECT_LE(shorter.Population[0]->Value, best);
}

}  // namespace
