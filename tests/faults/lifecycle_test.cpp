// Starts for which memory is short, and whole lives of the library with a failure anywhere in them.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <optional>

#include "allocations.h"
#include "calls.h"

namespace {

int32_t startWithFailure(long n, long& asked) {
  FailAllocations(n, n % 2 == 0 ? TFailure::one : TFailure::andAllAfter);
  const int32_t code = VIZL_Initialize(nullptr);
  asked = StopFailing();
  return code;
}

TEST(Start, ThatLacksMemoryLeavesTheLibraryUnready) {
  const long atFirst = LiveBlocks();
  long count, asked;
  ASSERT_EQ(startWithFailure(0, count), VIZLE_OK);
  ASSERT_EQ(VIZL_Finalize(), VIZLE_OK);
  EXPECT_EQ(LiveBlocks(), atFirst) << "after a whole life";
  const std::vector<long> places = PlacesAmong(count);
  const long live = LiveBlocks();
  for (const long n : places) {
    ASSERT_EQ(startWithFailure(n, asked), VIZLE_INVALID_ARGUMENT) << n;
    ASSERT_EQ(LiveBlocks(), live) << n;
    HImage image;
    ASSERT_EQ(VIZL_CreateEmptyImage(&image), VIZLE_INVALID_ARGUMENT);
    ASSERT_EQ(VIZL_resData("MW"), nullptr);
    ASSERT_EQ(VIZL_Initialize(nullptr), VIZLE_OK);
    ASSERT_EQ(VIZL_Finalize(), VIZLE_OK);
    ASSERT_EQ(LiveBlocks(), live);
  }
  std::printf("%ld allocations of a start\n", count);
}

TEST(Start, ASecondOneThatLacksMemoryLeavesTheLibraryAsItWas) {
  TWorld world;
  const std::vector<std::string> pictures = world.Pictures();
  const long live = LiveBlocks();
  long asked = 1;
  for (long n = 1; n <= 400; n += 7) {
    ASSERT_EQ(startWithFailure(n, asked), VIZLE_INVALID_ARGUMENT) << n;
    ASSERT_EQ(LiveBlocks(), live) << n;
    ASSERT_TRUE(world.Pictures() == pictures);
  }
  world.Prepare();
  EXPECT_EQ(VIZL_DetectEyesInRegion(TWorld::kFresh, &world.face, &world.out.points), VIZLE_OK);
  EXPECT_EQ(VIZL_DetectFacialFeatures_C(TWorld::kFresh, &world.out.points, TWorld::kQuick), VIZLE_OK);
}

// Start, tables that grow, and end. No code is looked at but that the end is reached.
void wholeLife(int32_t& started, int32_t& ended) {
  started = VIZL_Initialize(nullptr);
  HImage image = 0;
  ContextID contexts[20] = {};
  for (int i = 0; i < 40; ++i) VIZL_CreateEmptyImage(&image);
  for (ContextID& context : contexts) VIZL_CreateContext_ID(&context);
  for (const ContextID context : contexts) pcSetFaceShift_C(0.1F, 0, context);
  for (const ContextID context : contexts) VIZL_FreeContext_ID(context);
  for (HImage i = 0; i < 20; ++i) VIZL_FreeImage(i * 2);
  ended = VIZL_Finalize();
}

TEST(Life, LosesNothingWhereverMemoryIsShort) {
  const long live = LiveBlocks();
  int32_t started, ended;
  FailAllocations(0, TFailure::one);
  wholeLife(started, ended);
  const long count = StopFailing();
  ASSERT_EQ(LiveBlocks(), live);
  // The start has its own test.
  constexpr long kTables = 150;
  for (long n = std::max(count - kTables, 1L); n <= count; ++n) {
    FailAllocations(n, TFailure::one);
    wholeLife(started, ended);
    StopFailing();
    ASSERT_EQ(LiveBlocks(), live) << n;
    ASSERT_EQ(ended, started) << n;
  }
}

}  // namespace
