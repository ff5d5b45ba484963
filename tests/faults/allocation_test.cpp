// Every call with every allocation failing in turn: it answers a code that is documented for it, loses no memory,
// leaves the pictures as they were, and the same call without a failure then does what it always does.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <optional>

#include "allocations.h"
#include "calls.h"

namespace {

class Allocation : public testing::TestWithParam<TCall> {
 protected:
  struct TTold {
    int32_t code;
    std::string outputs, files;
    std::vector<std::string> pictures;
    bool operator==(const TTold&) const = default;
  };

  static void SetUpTestSuite() { sharedWorld.emplace(); }
  static void TearDownTestSuite() { sharedWorld.reset(); }

  TTold Tell(int32_t code) const { return {code, world.Outputs(), world.Files(), world.Pictures()}; }
  // One call between Prepare and Restore, with the n-th allocation failing (none for 0).
  TTold Run(long n, TFailure failure);
  void CheckFailed(const TTold& told);
  void CheckHandle(int32_t code);
  void CheckOneFailure(long n, TFailure failure);

  static std::optional<TWorld> sharedWorld;
  TWorld& world = *sharedWorld;
  long asked = 0;
  TTold before;  // after Prepare
  TTold good;
};

std::optional<TWorld> Allocation::sharedWorld;

Allocation::TTold Allocation::Run(long n, TFailure failure) {
  world.Prepare();
  before = Tell(VIZLE_OK);
  FailAllocations(n, failure);
  const int32_t code = GetParam().run(world);
  asked = StopFailing();
  const TTold told = Tell(code);
  if (code != VIZLE_OK) CheckFailed(told);
  world.Restore();
  return told;
}

// Outputs and pictures are as before, but for a handle that stays with its number told. A file may stay, but empty.
void Allocation::CheckFailed(const TTold& told) {
  const std::vector<int32_t>& shortage = GetParam().shortage;
  EXPECT_NE(std::find(shortage.begin(), shortage.end(), told.code), shortage.end()) << told.code;
  const HImage kept = GetParam().freesFresh ? TWorld::kFresh : TWorld::kMade;
  EXPECT_TRUE(std::equal(told.pictures.begin(), told.pictures.begin() + kept, before.pictures.begin()));
  EXPECT_TRUE(told.files == before.files);
  CheckHandle(told.code);
  world.out.handle = TOutputs().handle;
  EXPECT_TRUE(world.Outputs() == before.outputs);
}

// A handle is told if, and only if, there is one that the caller has to free.
void Allocation::CheckHandle(int32_t code) {
  const bool told = world.out.handle != TOutputs().handle;
  if (!GetParam().leavesHandle) {
    EXPECT_FALSE(told);
    return;
  }
  if (code == VIZLE_BAD_IMAGE_FILE || code == VIZLE_IMAGE_IO_FAILED) {
    EXPECT_TRUE(told);
  }
  int32_t width;
  EXPECT_EQ(VIZL_GetImageWidth(TWorld::kMade, &width) == VIZLE_OK, told);
  EXPECT_TRUE(!told || world.out.handle == TWorld::kMade);
}

void Allocation::CheckOneFailure(long n, TFailure failure) {
  SCOPED_TRACE(testing::Message() << "allocation " << n << (failure == TFailure::one ? "" : " and all after"));
  const long live = LiveBlocks();
  {
    const TTold told = Run(n, failure);
    EXPECT_TRUE(told.code != VIZLE_OK || told == good);
  }
  if (HasFailure()) return;  // whose messages take memory
  EXPECT_EQ(LiveBlocks(), live);
}

TEST_P(Allocation, MayFail) {
  Run(0, TFailure::one);  // tables grow and caches fill
  good = Run(0, TFailure::one);
  ASSERT_EQ(good.code, VIZLE_OK);
  const std::vector<long> places = PlacesAmong(asked);
  std::printf("%zu of %ld allocations fail\n", places.size(), asked);
  for (const long n : places) {
    CheckOneFailure(n, TFailure::one);
    CheckOneFailure(n, TFailure::andAllAfter);
    EXPECT_TRUE(Run(0, TFailure::one) == good) << "after allocation " << n;
    if (HasFailure()) return;
  }
}

INSTANTIATE_TEST_SUITE_P(OfEveryCall, Allocation, testing::ValuesIn(CallsUnderTest()),
                         [](const auto& call) { return std::string(call.param.name); });

}  // namespace
