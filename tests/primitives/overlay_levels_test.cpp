// Every overlay kernel of a faster level against the portable one, on random input of odd sizes at odd addresses; the
// bytes around the output count too.
#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "primitives/ippi.h"
#include "primitives/kernels.h"

namespace {

constexpr std::size_t kGuard = 32;

class OverlayLevels : public testing::TestWithParam<CpuLevel> {
 protected:
  void SetUp() override {
    if (kernelsOf(GetParam()) == nullptr) GTEST_SKIP() << "this processor lacks the level";
  }

  int upTo(int most) { return 1 + static_cast<int>(random_() % static_cast<unsigned>(most)); }

  std::vector<float> randomFloats(std::size_t count, float low, float high) {
    std::vector<float> values(count);
    for (float& value : values) value = std::uniform_real_distribution<float>(low, high)(random_);
    return values;
  }

  // Runs `call(kernels, out)` for both tables on the same content and compares the output with its guards.
  template <class T, class Call>
  void expectSame(std::size_t count, Call call) {
    const std::size_t shift = random_() % 16;
    std::vector<T> a(count + 2 * kGuard);
    for (T& value : a) value = static_cast<T>(random_() % 256);
    std::vector<T> b = a;
    const std::vector<T> before = a;
    call(kernelsOf(CpuLevel::base)->overlay, a.data() + shift);
    call(kernelsOf(GetParam())->overlay, b.data() + shift);
    ASSERT_EQ(0, std::memcmp(a.data(), b.data(), a.size() * sizeof(T)));
    for (std::size_t k = shift + count; k < a.size(); ++k) ASSERT_EQ(b[k], before[k]) << "written behind the end";
  }

  std::mt19937 random_{4712};
};

TEST_P(OverlayLevels, GaussRows) {
  for (int round = 0; round < 300; ++round) {
    const int count = upTo(round % 3 == 0 ? 300 : 40), taps = 1 + 2 * upTo(40);
    const auto n = static_cast<std::size_t>(count), t = static_cast<std::size_t>(taps);
    const std::vector<float> row = randomFloats(n + t - 1, -255.0F, 255.0F), weights = randomFloats(t, 0.0F, 0.1F);
    expectSame<float>(n, [&](const OverlayKernels& kernel, float* out) {
      kernel.gaussRow(row.data(), weights.data(), taps, out, count);
    });
  }
}

TEST_P(OverlayLevels, GaussColumns) {
  for (int round = 0; round < 300; ++round) {
    const int count = upTo(round % 3 == 0 ? 200 : 40), taps = 1 + 2 * upTo(round % 2 == 0 ? 2 : 30);
    const int outputs = std::min(upTo(kGaussOutputs), taps), step = count + upTo(5) - 1;
    const auto n = static_cast<std::size_t>(count), t = static_cast<std::size_t>(taps);
    const std::vector<float> weights = randomFloats(t, 0.0F, 0.1F);
    std::vector<std::vector<float>> lines;
    std::vector<const float*> rows;
    for (int r = 0; r < taps + outputs - 1; ++r) lines.push_back(randomFloats(n, -255.0F, 255.0F));
    for (const std::vector<float>& line : lines) rows.push_back(line.data());
    const auto size = static_cast<std::size_t>(step * (outputs - 1) + count);
    expectSame<float>(size, [&](const OverlayKernels& kernel, float* out) {
      kernel.gaussColumns(rows.data(), weights.data(), taps, out, step * 4, outputs, count);
    });
  }
}

TEST_P(OverlayLevels, MatchedRows) {
  for (int round = 0; round < 300; ++round) {
    const auto count = static_cast<std::size_t>(upTo(30));
    // Values about the least mean, and ratios from far below 1 to far above.
    const float high = round % 3 == 0 ? 2e-5F : round % 3 == 1 ? 1.0F : 255.0F;
    const std::vector<float> a = randomFloats(4 * count, 0.0F, high), b = randomFloats(4 * count, -2e-5F, 255.0F);
    const std::vector<float> c = randomFloats(4 * count, 0.0F, 255.0F), d = randomFloats(4 * count, 0.0F, high);
    const unsigned channels = random_() % 8;
    expectSame<Ipp8u>(4 * count, [&](const OverlayKernels& kernel, Ipp8u* pixels) {
      kernel.matchRow(pixels, {a.data(), b.data(), c.data(), d.data()}, channels, count);
    });
  }
}

INSTANTIATE_TEST_SUITE_P(Levels, OverlayLevels, testing::Values(CpuLevel::sse41, CpuLevel::avx2),
                         [](const auto& instance) { return std::string(cpuLevelName(instance.param)); });

TEST(PlanesOfFourChannels, ComeApartAndTogether) {
  std::mt19937 random(3);
  for (const IppiSize size : {IppiSize{1, 1}, {3, 2}, {4, 5}, {7, 3}, {50, 4}}) {
    const int planeStep = size.width + 3, pixelStep = 4 * size.width + 5;  // in floats
    const auto planeSize = static_cast<std::size_t>(planeStep * size.height);
    std::vector<float> pixels(static_cast<std::size_t>(pixelStep * size.height));
    for (float& value : pixels) value = static_cast<float>(random() % 1000);
    std::vector<std::vector<float>> planes(4, std::vector<float>(planeSize, -1.0F));
    float* const parts[4] = {planes[0].data(), planes[1].data(), planes[2].data(), planes[3].data()};
    ASSERT_EQ(ippiCopy_32f_C4P4R(pixels.data(), pixelStep * 4, parts, planeStep * 4, size), ippStsNoErr);
    for (int i = 0; i < static_cast<int>(planeSize); ++i) {
      const int x = i % planeStep, y = i / planeStep;
      for (int c = 0; c < 4; ++c) {
        const float expected = x < size.width ? pixels[static_cast<std::size_t>(y * pixelStep + 4 * x + c)] : -1.0F;
        ASSERT_EQ(parts[c][i], expected) << x << ", " << y << ", channel " << c;
      }
    }
    std::vector<float> joined = pixels;
    for (int y = 0; y < size.height; ++y) std::fill_n(joined.begin() + y * pixelStep, 4 * size.width, 0.0F);
    ASSERT_EQ(ippiCopy_32f_P4C4R(parts, planeStep * 4, joined.data(), pixelStep * 4, size), ippStsNoErr);
    EXPECT_EQ(joined, pixels);
  }
}

TEST(PlanesOfFourChannels, RefuseNullsAndEmptySizes) {
  float pixels[4] = {1, 2, 3, 4}, values[4] = {};
  float* planes[4] = {values, values + 1, values + 2, nullptr};
  EXPECT_EQ(ippiCopy_32f_C4P4R(pixels, 16, planes, 4, {1, 1}), ippStsNullPtrErr);
  EXPECT_EQ(ippiCopy_32f_C4P4R(pixels, 16, nullptr, 4, {1, 1}), ippStsNullPtrErr);
  EXPECT_EQ(ippiCopy_32f_P4C4R(planes, 4, pixels, 16, {1, 1}), ippStsNullPtrErr);
  planes[3] = values + 3;
  EXPECT_EQ(ippiCopy_32f_C4P4R(pixels, 16, planes, 4, {0, 1}), ippStsSizeErr);
  EXPECT_EQ(ippiCopy_32f_P4C4R(planes, 4, nullptr, 16, {1, 1}), ippStsNullPtrErr);
  EXPECT_EQ(values[0], 0.0F);
}

}  // namespace
