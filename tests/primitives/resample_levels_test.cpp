// Every kernel of a faster level against the portable one, on random input of odd sizes at odd addresses; the
// bytes around the output count too.
#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "primitives/kernels.h"

namespace {

constexpr std::size_t kGuard = 32;

class ResampleLevels : public testing::TestWithParam<CpuLevel> {
 protected:
  void SetUp() override {
    if (kernelsOf(GetParam()) == nullptr) GTEST_SKIP() << "this processor lacks the level";
  }

  int upTo(int most) { return 1 + static_cast<int>(random_() % static_cast<unsigned>(most)); }

  template <class T>
  std::vector<T> randomBits(std::size_t count) {
    std::vector<T> values(count);
    for (T& value : values) value = static_cast<T>(random_());
    return values;
  }

  std::vector<float> randomFloats(std::size_t count, float low, float high) {
    std::vector<float> values(count);
    for (float& value : values) value = std::uniform_real_distribution<float>(low, high)(random_);
    return values;
  }

  // Column means as the first pass leaves them, with the room behind that the kernels may read.
  std::vector<std::uint16_t> columnMeans(std::size_t samples) {
    std::vector<std::uint16_t> columns = randomBits<std::uint16_t>(samples + 64);
    for (std::uint16_t& value : columns) value = static_cast<std::uint16_t>(value % 65281);
    for (std::size_t k = 0; k < samples / 3; ++k) columns[k] = 65280;
    return columns;
  }

  // Runs `call(kernels, out)` for both tables and compares the output with its guards.
  template <class T, class Call>
  void expectSame(std::size_t count, Call call) {
    const std::size_t shift = random_() % 16;
    std::vector<T> a(count + 2 * kGuard, T{3}), b = a;
    call(kernelsOf(CpuLevel::base)->resample, a.data() + shift);
    call(kernelsOf(GetParam())->resample, b.data() + shift);
    ASSERT_EQ(0, std::memcmp(a.data(), b.data(), a.size() * sizeof(T)));
    for (std::size_t k = shift + count; k < a.size(); ++k) ASSERT_EQ(b[k], T{3}) << "written behind the end";
  }

  std::mt19937 random_{4711};
};

TEST_P(ResampleLevels, AreaRows) {
  for (int round = 0; round < 60; ++round) {
    const int samples = upTo(200);
    const auto count = static_cast<std::size_t>(samples);
    const int rows = round == 0 ? kAreaMaxSummedRows : upTo(23);
    std::vector<Ipp8u> source = randomBits<Ipp8u>(count * static_cast<std::size_t>(std::max(rows, 3)));
    if (round == 0) std::fill(source.begin(), source.end(), Ipp8u{255});
    const Ipp8u *first = source.data(), *middle = first + samples, *last = middle + samples;
    expectSame<std::uint16_t>(count, [&](const ResampleKernels& kernel, std::uint16_t* out) {
      kernel.areaSumRows(first, samples, rows, out, samples);
    });
    const float part = std::uniform_real_distribution<float>(0.0F, 1.0F)(random_);
    const float mix[3] = {part * 128.0F, 128.0F, (1.0F - part) * 128.0F};
    expectSame<std::uint16_t>(count, [&](const ResampleKernels& kernel, std::uint16_t* out) {
      kernel.areaMixRows(first, middle, last, mix, out, samples);
    });
    const std::vector<std::uint16_t> sums = randomBits<std::uint16_t>(count);
    const float scaled[3] = {part / 2.0F, 0.98F, (1.0F - part) / 2.0F};
    expectSame<std::uint16_t>(count, [&](const ResampleKernels& kernel, std::uint16_t* out) {
      kernel.areaMixSums(first, sums.data(), last, scaled, out, samples);
    });
  }
}

TEST_P(ResampleLevels, AreaColumns) {
  for (int round = 0; round < 150; ++round) {
    const int channels = round % 3 == 0 ? 1 : round % 3 == 1 ? 3 : 4, index = resampleChannelIndex(channels);
    const int taps = round % 2 == 0 ? 4 : kAreaMaxTaps, pixels = upTo(50), width = 60;
    const std::vector<std::uint16_t> columns = columnMeans(static_cast<std::size_t>(width * channels));
    std::vector<std::int32_t> first;
    std::vector<std::int16_t> weights;
    std::vector<AreaSpan> spans;
    for (int i = 0; i < pixels; ++i) {
      first.push_back(static_cast<int>(random_() % static_cast<unsigned>(width - taps)));
      // Random parts of one whole, some of them the whole itself.
      int rest = 1 << kAreaWeightBits;
      for (int t = 0; t < taps; ++t) {
        const int weight = t + 1 == taps || random_() % 5 == 0 ? rest : static_cast<int>(random_()) & (rest / 2);
        weights.push_back(static_cast<std::int16_t>(-weight));
        rest -= weight;
      }
      const int begin = static_cast<int>(random_() % 20), full = static_cast<int>(random_() % 38);
      const float unit = 1.0F / (static_cast<float>(full) + 1.2F) / kAreaFractionScale;
      spans.push_back({begin, full, begin + full + 1, 0.5F * unit, unit, 0.7F * unit});
    }
    const auto count = static_cast<std::size_t>(pixels * channels);
    expectSame<Ipp8u>(count, [&](const ResampleKernels& kernel, Ipp8u* out) {
      kernel.areaNarrow[index](columns.data(), first.data(), weights.data(), taps, out, pixels);
    });
    expectSame<Ipp8u>(count, [&](const ResampleKernels& kernel, Ipp8u* out) {
      kernel.areaWide[index](columns.data(), spans.data(), out, pixels);
    });
  }
}

// A row of 65,535 white pixels overflows the signed sums that vectors convert to float.
TEST_P(ResampleLevels, AreaOfTheLongestRow) {
  constexpr int kWidth = 65535;
  for (const int channels : {1, 3, 4}) {
    const std::vector<std::uint16_t> columns(static_cast<std::size_t>(kWidth * channels + 64), 65280);
    const float unit = 1.0F / static_cast<float>(kWidth) / kAreaFractionScale;
    const std::vector<AreaSpan> spans(5, AreaSpan{0, kWidth - 2, kWidth - 1, unit, unit, unit});
    std::vector<Ipp8u> out(static_cast<std::size_t>(5 * channels));
    kernelsOf(GetParam())
        ->resample.areaWide[resampleChannelIndex(channels)](columns.data(), spans.data(), out.data(), 5);
    EXPECT_EQ(out, std::vector<Ipp8u>(out.size(), 255));
  }
}

TEST_P(ResampleLevels, Lanczos) {
  for (int round = 0; round < 90; ++round) {
    const int channels = round % 3 == 0 ? 1 : round % 3 == 1 ? 3 : 4, pixels = upTo(60), width = 40;
    const std::vector<float> row = randomFloats(static_cast<std::size_t>((width + 6) * channels + 4), -300.0F, 600.0F);
    const std::vector<float> weights = randomFloats(static_cast<std::size_t>(pixels * kLanczosTaps), -0.3F, 1.1F);
    std::vector<std::int32_t> first;
    for (int i = 0; i < pixels; ++i) first.push_back(static_cast<int>(random_() % width));
    const auto count = static_cast<std::size_t>(pixels * channels);
    expectSame<float>(count, [&](const ResampleKernels& kernel, float* out) {
      kernel.lanczosRow[resampleChannelIndex(channels)](row.data(), first.data(), weights.data(), out, pixels);
    });
    std::vector<std::vector<float>> lines;
    for (int t = 0; t < kLanczosTaps; ++t) lines.push_back(randomFloats(count, -300.0F, 600.0F));
    const float* const rows[] = {lines[0].data(), lines[1].data(), lines[2].data(),
                                 lines[3].data(), lines[4].data(), lines[5].data()};
    expectSame<Ipp8u>(count, [&](const ResampleKernels& kernel, Ipp8u* out) {
      kernel.lanczosColumns8u(rows, weights.data(), out, static_cast<int>(count));
    });
    expectSame<float>(count, [&](const ResampleKernels& kernel, float* out) {
      kernel.lanczosColumns32f(rows, weights.data(), out, static_cast<int>(count));
    });
  }
}

TEST_P(ResampleLevels, RotatedSpans) {
  constexpr int kSide = 90, kPadding = 7;
  for (int round = 0; round < 120; ++round) {
    const int channels = round % 3 == 0 ? 1 : round % 3 == 1 ? 3 : 4, pixels = upTo(50);
    const int step = kSide * channels + kPadding;
    const std::vector<Ipp8u> source = randomBits<Ipp8u>(static_cast<std::size_t>(step * kSide));
    // From the middle, every direction stays inside.
    const auto unit = [&] { return static_cast<std::int64_t>(random_()) - (std::int64_t{1} << 31); };
    const FixedPoint from{(std::int64_t{40} << 32) + unit(), (std::int64_t{40} << 32) + unit()};
    const FixedPoint move{unit(), round % 5 == 0 ? 0 : unit()};
    const bool lastRowFirst = round % 2 != 0;
    const Ipp8u* origin = source.data() + (lastRowFirst ? step * (kSide - 1) : 0);
    expectSame<Ipp8u>(static_cast<std::size_t>(pixels * channels), [&](const ResampleKernels& kernel, Ipp8u* out) {
      kernel.rotateSpan[resampleChannelIndex(channels)](origin, lastRowFirst ? -step : step, from, move, out, pixels);
    });
  }
}

INSTANTIATE_TEST_SUITE_P(Levels, ResampleLevels, testing::Values(CpuLevel::sse41, CpuLevel::avx2),
                         [](const auto& instance) { return std::string(cpuLevelName(instance.param)); });

}  // namespace
