#include "training/evaluation/processes.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <numeric>
#include <stdexcept>

namespace evaluation {
namespace {

class Processes : public testing::TestWithParam<unsigned> {};

TEST_P(Processes, GiveTheBytesOfEachIndex) {
  const auto results = forEachIndexInProcesses(23, GetParam(), [](std::size_t i) {
    std::vector<std::size_t> numbers(i * 3001);  // the last ones far longer than a pipe or a buffer holds
    std::iota(numbers.begin(), numbers.end(), i);
    return bytesOf(numbers);
  });
  ASSERT_EQ(results.size(), 23u);
  for (std::size_t i = 0; i < results.size(); ++i) {
    const auto numbers = recordsOf<std::size_t>(results[i]);
    ASSERT_EQ(numbers.size(), i * 3001);
    if (i > 0) {
      EXPECT_EQ(numbers.back(), i + i * 3001 - 1);
    }
  }
}

TEST_P(Processes, TellOfAFailure) {
  const auto fail = [](std::size_t i) -> std::string {
    if (i == 2) throw std::runtime_error("on purpose");
    return {};
  };
  EXPECT_THROW(forEachIndexInProcesses(5, GetParam(), fail), std::runtime_error);
}

INSTANTIATE_TEST_SUITE_P(Counts, Processes, testing::Values(1u, 2u, 30u));

TEST(ProcessesAtOnce, KeepTheirRandomSequencesApart) {
  // Each call sees the sequence that it has seeded, as a single search does.
  const auto results = forEachIndexInProcesses(40, 4, [](std::size_t) {
    std::srand(7);
    std::vector<int> drawn(1000);
    for (int& number : drawn) number = std::rand();
    return bytesOf(drawn);
  });
  for (const std::string& result : results) EXPECT_EQ(result, results[0]);
}

}  // namespace
}  // namespace evaluation
