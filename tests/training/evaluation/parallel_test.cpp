#include "training/evaluation/parallel.h"

#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>
#include <vector>

namespace evaluation {
namespace {

class ForEachIndexThreads : public testing::TestWithParam<unsigned> {};

TEST_P(ForEachIndexThreads, VisitEachIndexOnce) {
  std::vector<std::atomic<int>> visits(1000);
  forEachIndex(visits.size(), GetParam(), [&](std::size_t i) { ++visits[i]; });
  for (const auto& count : visits) ASSERT_EQ(count, 1);
}

TEST_P(ForEachIndexThreads, PassOnAnException) {
  EXPECT_THROW(forEachIndex(100, GetParam(),
                            [](std::size_t i) {
                              if (i == 40) throw std::runtime_error("broken");
                            }),
               std::runtime_error);
}

INSTANTIATE_TEST_SUITE_P(Counts, ForEachIndexThreads, testing::Values(1u, 2u, 7u));

}  // namespace
}  // namespace evaluation
