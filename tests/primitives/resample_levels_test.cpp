// Every kernel of a faster level against the portable one, on random input of odd sizes at odd addresses; the
// bytes around the output count too.
#include "tests/primitives/level_test.h"

namespace {

class ResampleLevels : public LevelTest {
 protected:
  // Column means as the first pass leaves them, with the room behind that the kernels may read.
  std::vector<std::uint16_t> columnMeans(std::size_t samples) {
    std::vector<std::uint16_t> columns = Bits<std::uint16_t>(samples + 64);
    for (std::uint16_t& value : columns) value = static_cast<std::uint16_t>(value % 65281);
    for (std::size_t k = 0; k < samples / 3; ++k) columns[k] = 65280;
    return columns;
  }
};

TEST_P(ResampleLevels, AreaRows) {
  for (int round = 0; round < 60; ++round) {
    const int samples = UpTo(200);
    const auto count = static_cast<std::size_t>(samples);
    const int rows = round == 0 ? kAreaMaxSummedRows : UpTo(23);
    std::vector<Ipp8u> source = Bits<Ipp8u>(count * static_cast<std::size_t>(std::max(rows, 3)));
    if (round == 0) std::fill(source.begin(), source.end(), Ipp8u{255});
    const Ipp8u *first = source.data(), *middle = first + samples, *last = middle + samples;
    ExpectSame<std::uint16_t>(count, [&](const Kernels& level, std::uint16_t* out) {
      level.resample.areaSumRows(first, samples, rows, out, samples);
    });
    const float part = std::uniform_real_distribution<float>(0.0F, 1.0F)(random_);
    const float mix[3] = {part * 128.0F, 128.0F, (1.0F - part) * 128.0F};
    ExpectSame<std::uint16_t>(count, [&](const Kernels& level, std::uint16_t* out) {
      level.resample.areaMixRows(first, middle, last, mix, out, samples);
    });
    const std::vector<std::uint16_t> sums = Bits<std::uint16_t>(count);
    const float scaled[3] = {part / 2.0F, 0.98F, (1.0F - part) / 2.0F};
    ExpectSame<std::uint16_t>(count, [&](const Kernels& level, std::uint16_t* out) {
      level.resample.areaMixSums(first, sums.data(), last, scaled, out, samples);
    });
  }
}

TEST_P(ResampleLevels, AreaColumns) {
  for (int round = 0; round < 150; ++round) {
    const int channels = round % 3 == 0 ? 1 : round % 3 == 1 ? 3 : 4, index = resampleChannelIndex(channels);
    const int taps = round % 2 == 0 ? 4 : kAreaMaxTaps, pixels = UpTo(50), width = 60;
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
    ExpectSame<Ipp8u>(count, [&](const Kernels& level, Ipp8u* out) {
      level.resample.areaNarrow[index](columns.data(), first.data(), weights.data(), taps, out, pixels);
    });
    ExpectSame<Ipp8u>(count, [&](const Kernels& level, Ipp8u* out) {
      level.resample.areaWide[index](columns.data(), spans.data(), out, pixels);
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
    Level().resample.areaWide[resampleChannelIndex(channels)](columns.data(), spans.data(), out.data(), 5);
    EXPECT_EQ(out, std::vector<Ipp8u>(out.size(), 255));
  }
}

TEST_P(ResampleLevels, Lanczos) {
  for (int round = 0; round < 90; ++round) {
    const int channels = round % 3 == 0 ? 1 : round % 3 == 1 ? 3 : 4, pixels = UpTo(60), width = 40;
    const std::vector<float> row = Floats(static_cast<std::size_t>((width + 6) * channels + 4), -300.0F, 600.0F);
    const std::vector<float> weights = Floats(static_cast<std::size_t>(pixels * kLanczosTaps), -0.3F, 1.1F);
    std::vector<std::int32_t> first;
    for (int i = 0; i < pixels; ++i) first.push_back(static_cast<int>(random_() % width));
    const auto count = static_cast<std::size_t>(pixels * channels);
    ExpectSame<float>(count, [&](const Kernels& level, float* out) {
      level.resample.lanczosRow[resampleChannelIndex(channels)](row.data(), first.data(), weights.data(), out, pixels);
    });
    std::vector<std::vector<float>> lines;
    for (int t = 0; t < kLanczosTaps; ++t) lines.push_back(Floats(count, -300.0F, 600.0F));
    const float* const rows[] = {lines[0].data(), lines[1].data(), lines[2].data(),
                                 lines[3].data(), lines[4].data(), lines[5].data()};
    ExpectSame<Ipp8u>(count, [&](const Kernels& level, Ipp8u* out) {
      level.resample.lanczosColumns8u(rows, weights.data(), out, static_cast<int>(count));
    });
    ExpectSame<float>(count, [&](const Kernels& level, float* out) {
      level.resample.lanczosColumns32f(rows, weights.data(), out, static_cast<int>(count));
    });
  }
}

TEST_P(ResampleLevels, RotatedSpans) {
  constexpr int kSide = 90, kPadding = 7;
  for (int round = 0; round < 120; ++round) {
    const int channels = round % 3 == 0 ? 1 : round % 3 == 1 ? 3 : 4, pixels = UpTo(50);
    const int step = kSide * channels + kPadding;
    const std::vector<Ipp8u> source = Bits<Ipp8u>(static_cast<std::size_t>(step * kSide));
    // From the middle, every direction stays inside.
    const auto unit = [&] { return static_cast<std::int64_t>(random_()) - (std::int64_t{1} << 31); };
    const FixedPoint from{(std::int64_t{40} << 32) + unit(), (std::int64_t{40} << 32) + unit()};
    const FixedPoint move{unit(), round % 5 == 0 ? 0 : unit()};
    const bool lastRowFirst = round % 2 != 0;
    const Ipp8u* origin = source.data() + (lastRowFirst ? step * (kSide - 1) : 0);
    ExpectSame<Ipp8u>(static_cast<std::size_t>(pixels * channels), [&](const Kernels& level, Ipp8u* out) {
      level.resample.rotateSpan[resampleChannelIndex(channels)](origin, lastRowFirst ? -step : step, from, move, out,
                                                                pixels);
    });
  }
}

INSTANTIATE_TEST_SUITE_P(Levels, ResampleLevels, testing::Values(CpuLevel::sse41, CpuLevel::avx2), levelName);

}  // namespace
