#include "training/features/node_targets.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace {

TEST(Targets, AreDeepestAtTheNodeAndRiseWithTheDistance) {
  const TargetBells bells = {{1, 2.8}};
  EXPECT_NEAR(targetAt(bells, 0), -0.49, 1e-6);
  EXPECT_NEAR(targetAt(bells, 2.8 * 2.8), 0.98 * (0.5 - std::exp(-0.5)), 1e-6);
  EXPECT_NEAR(targetAt(bells, 1e6), 0.49, 1e-6);
  for (double d = 0; d < 10; d += 0.25) EXPECT_LT(targetAt(bells, d * d), targetAt(bells, (d + 0.25) * (d + 0.25)));
}

TEST(Targets, AddUpSeveralBells) {
  const TargetBells bells = parseBells("0.7:2.5,0.3:10");
  ASSERT_EQ(bells.size(), 2u);
  EXPECT_NEAR(targetAt(bells, 9), 0.98 * (0.5 - 0.7 * std::exp(-9 / 12.5) - 0.3 * std::exp(-9 / 200.0)), 1e-6);
  for (const char* damaged : {"1", "1:", "1:0", "1;2", "a:b", "1:2,x"}) {
    EXPECT_THROW(parseBells(damaged), std::runtime_error) << damaged;
  }
}

TEST(Targets, DifferByTheKindOfNode) {
  const NodeTargets targets;
  for (const std::size_t n : {0u, 4u, 16u, 22u, 28u, 34u, 39u}) EXPECT_EQ(&targets.of(n), &targets.inner) << n;
  for (const std::size_t n : {10u, 15u, 29u, 33u}) EXPECT_EQ(&targets.of(n), &targets.outline) << n;
  for (const std::size_t n : {5u, 9u}) EXPECT_EQ(&targets.of(n), &targets.forehead) << n;
}

// A search that ends 1.2 pixels beside its labels, wherever they are moved to.
TEST(LabelShifts, BringResultsToWhereTruncationMakesThemRight) {
  LabelShifts shifts{};
  for (int round = 0; round < 8; ++round) {
    std::array<double, 80> errors;
    for (std::size_t k = 0; k < 80; ++k) errors[k] = shifts[k] + (k % 2 == 0 ? 1.2 : -0.7);
    correctShifts(shifts, errors, 0.8, 0.43);
  }
  for (std::size_t k = 0; k < 80; ++k) EXPECT_NEAR(shifts[k], k % 2 == 0 ? 0.43 - 1.2 : 0.43 + 0.7, 1e-4) << k;
}

TEST(LabelShifts, ComeBackFromAFile) {
  const auto file = std::filesystem::path(testing::TempDir()) / "shifts.txt";
  LabelShifts shifts{};
  for (std::size_t k = 0; k < 80; ++k) shifts[k] = 0.125 * static_cast<double>(k) - 3;
  writeShifts(file, shifts);
  EXPECT_EQ(readShifts(file), shifts);
  std::ofstream(file) << "1 2 3";
  EXPECT_THROW(readShifts(file), std::runtime_error);
  std::filesystem::remove(file);
}

}  // namespace
