#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <type_traits>
#include <vector>

#include "primitives/kernels.h"

namespace {

// A group of the table is nothing but pointers to functions.
template <class Group>
std::vector<std::uintptr_t> pointersOf(const Group& group) {
  if constexpr (std::is_empty_v<Group>) return {};
  static_assert(std::is_trivially_copyable_v<Group>);
  std::vector<std::uintptr_t> pointers(sizeof(Group) / sizeof(std::uintptr_t));
  std::memcpy(pointers.data(), &group, pointers.size() * sizeof(std::uintptr_t));
  return pointers;
}

template <class Group>
void expectSet(const Group& group, const char* name) {
  const std::vector<std::uintptr_t> pointers = pointersOf(group);
  for (std::size_t i = 0; i < pointers.size(); ++i) EXPECT_NE(pointers[i], 0u) << name << " kernel " << i;
}

class KernelTable : public testing::TestWithParam<CpuLevel> {};

TEST_P(KernelTable, HasEveryKernel) {
  const Kernels* table = kernelsOf(GetParam());
  if (table == nullptr) GTEST_SKIP() << "this processor lacks the level";
  expectSet(table->pixel, "pixel");
  expectSet(table->resample, "resample");
  expectSet(table->haar, "haar");
  expectSet(table->overlay, "overlay");
  expectSet(table->vector, "vector");
  expectSet(table->patch, "patch");
}

INSTANTIATE_TEST_SUITE_P(Levels, KernelTable, testing::Values(CpuLevel::base, CpuLevel::sse41, CpuLevel::avx2),
                         [](const auto& instance) { return std::string(cpuLevelName(instance.param)); });

TEST(CpuLevelChoice, FollowsTheEnvironmentDownwards) {
  const CpuLevel best = kernelsOf(CpuLevel::avx2)    ? CpuLevel::avx2
                        : kernelsOf(CpuLevel::sse41) ? CpuLevel::sse41
                                                     : CpuLevel::base;
  const char* wanted = std::getenv("PORTRAITCUT_CPU");
  CpuLevel expected = best;
  for (const CpuLevel level : {CpuLevel::base, CpuLevel::sse41}) {
    if (wanted != nullptr && std::string(wanted) == cpuLevelName(level) && level < best) expected = level;
  }
  EXPECT_EQ(cpuLevel(), expected);
  EXPECT_EQ(&kernels(), kernelsOf(expected));
}

// A faster level that was never put in would pass every other test.
TEST(CpuLevelChoice, LevelsDiffer) {
  const Kernels* sse41 = kernelsOf(CpuLevel::sse41);
  if (sse41 == nullptr) GTEST_SKIP() << "this processor has one level";
  EXPECT_NE(kernelsOf(CpuLevel::base)->pixel.grayC3, sse41->pixel.grayC3);
  const Kernels* avx2 = kernelsOf(CpuLevel::avx2);
  EXPECT_TRUE(avx2 == nullptr || avx2->pixel.grayC3 != sse41->pixel.grayC3);
}

}  // namespace
