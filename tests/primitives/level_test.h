// What the tests of one processor level's kernels against the portable ones share.
#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "primitives/kernels.h"

class LevelTest : public testing::TestWithParam<CpuLevel> {
 protected:
  void SetUp() override {
    if (kernelsOf(GetParam()) == nullptr) GTEST_SKIP() << "this processor lacks the level";
  }

  const Kernels& Level() const { return *kernelsOf(GetParam()); }
  const Kernels& Base() const { return *kernelsOf(CpuLevel::base); }

  int UpTo(int most) { return 1 + static_cast<int>(random_() % static_cast<unsigned>(most)); }

  template <class T>
  std::vector<T> Bits(std::size_t count) {
    std::vector<T> values(count);
    for (T& value : values) value = static_cast<T>(random_());
    return values;
  }

  std::vector<float> Floats(std::size_t count, float low, float high) {
    std::vector<float> values(count);
    for (float& value : values) value = std::uniform_real_distribution<float>(low, high)(random_);
    return values;
  }

  // Runs `call(kernels, out)` for both tables on the same bytes at an odd address, and compares the output with what is
  // around it.
  template <class T, class Call>
  void ExpectSame(std::size_t count, Call call) {
    constexpr std::size_t kGuard = 32;
    const std::size_t shift = random_() % 16;
    std::vector<T> a(count + 2 * kGuard);
    for (T& value : a) value = static_cast<T>(random_() % 256);
    const std::vector<T> before = a;
    std::vector<T> b = a;
    call(Base(), a.data() + shift);
    call(Level(), b.data() + shift);
    ASSERT_EQ(0, std::memcmp(a.data(), b.data(), a.size() * sizeof(T)));
    for (std::size_t k = shift + count; k < a.size(); ++k) ASSERT_EQ(b[k], before[k]) << "written behind the end";
  }

  std::mt19937 random_{4711};
};

inline std::string levelName(const testing::TestParamInfo<CpuLevel>& level) { return cpuLevelName(level.param); }
