// The kernels of the search for facial points: every level against the portable one, and that one against plain sums.
#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>

#include "primitives/ipps.h"
#include "tests/primitives/level_test.h"

namespace {

class PatchLevels : public LevelTest {
 protected:
  const PatchKernels& Kernel() { return Level().patch; }
};

bool sameBits(const float* a, const float* b, std::size_t count) {
  return std::memcmp(a, b, count * sizeof(float)) == 0;
}

// The order of the sum as the headers give it.
float plainDotProduct(const float* a, const float* b, std::size_t count) {
  float sums[16] = {};
  for (std::size_t i = 0; i < count; ++i) sums[i % 16] += a[i] * b[i];
  for (int half = 8; half > 0; half /= 2) {
    for (int k = 0; k < half; ++k) sums[k] += sums[k + half];
  }
  return sums[0];
}

TEST_P(PatchLevels, DotProducts) {
  for (std::size_t count = 1; count < 90; ++count) {
    const std::vector<float> a = Floats(count + 1, -2, 2), b = Floats(count + 1, -2, 2);
    EXPECT_EQ(Level().vector.dotProd(a.data() + 1, b.data(), count), plainDotProduct(a.data() + 1, b.data(), count));
  }
}

TEST_P(PatchLevels, HiddenSums) {
  constexpr int kStep = 61;
  for (int round = 0; round < 100; ++round) {
    // Nothing behind the patch's last pixel.
    std::vector<Ipp8u> pixels(31 * kStep + 32);
    for (Ipp8u& pixel : pixels) pixel = static_cast<Ipp8u>(random_());
    const float factor = 1.0F / static_cast<float>(1 + random_() % 255), offset = Floats(1, -2.0F, 0.5F)[0];
    std::vector<float> inputs(1024), weights[3];
    for (std::size_t i = 0; i < 1024; ++i) {
      const float value = static_cast<float>(pixels[i / 32 * kStep + i % 32]) * factor + offset;
      inputs[i] = std::clamp(value, -0.5F, 0.5F);
    }
    for (auto& neuron : weights) neuron = Floats(1024, -1, 1);
    const float* const pointers[] = {weights[0].data(), weights[1].data(), weights[2].data()};
    float sums[3];
    Kernel().hiddenSums(pixels.data(), kStep, factor, offset, pointers, sums);
    for (int h = 0; h < 3; ++h) EXPECT_EQ(sums[h], plainDotProduct(pointers[h], inputs.data(), 1024));
  }
}

TEST_P(PatchLevels, HalfTanh) {
  std::vector<float> values = {0.0F,
                               -0.0F,
                               1e-40F,
                               -1e-30F,
                               1e-8F,
                               0.17328F,
                               0.17329F,
                               21.9F,
                               22.1F,
                               -30.0F,
                               1e30F,
                               std::numeric_limits<float>::infinity(),
                               -std::numeric_limits<float>::infinity()};
  for (const float reach : {1e-6F, 0.01F, 1.0F, 10.0F, 40.0F}) {
    const std::vector<float> more = Floats(20001, -reach, reach);
    values.insert(values.end(), more.begin(), more.end());
  }
  std::vector<float> result(values.size());
  Kernel().halfTanh(values.data(), result.data(), values.size());
  for (std::size_t i = 0; i < values.size(); ++i) {
    // A float holds 29 bits less than the double it is rounded from: the C library rounds to the same one.
    EXPECT_EQ(result[i], static_cast<float>(0.5 * std::tanh(static_cast<double>(values[i])))) << values[i];
    EXPECT_EQ(std::signbit(result[i]), std::signbit(values[i]));
  }
  for (std::size_t count = 0; count < 9; ++count) {
    std::vector<float> some(values.begin() + 20, values.begin() + 30), expected = some;
    std::copy_n(result.begin() + 20, count, expected.begin());
    Kernel().halfTanh(some.data(), some.data(), count);
    EXPECT_EQ(some, expected) << "in place, and nothing behind the end";
  }
  float nan = std::numeric_limits<float>::quiet_NaN();
  Kernel().halfTanh(&nan, &nan, 1);
  EXPECT_TRUE(std::isnan(nan));
}

TEST_P(PatchLevels, PatchExtremes) {
  std::vector<Ipp8u> picture(kRangePictureStep * kRangePictureSide), work(kRangeWorkBytes);
  std::vector<Ipp8u> result(kRangeSide * kRangeSide);
  for (const unsigned kinds : {256U, 2U, 30U}) {
    for (Ipp8u& pixel : picture) pixel = static_cast<Ipp8u>(random_() % kinds * (255 / (kinds - 1)));
    // A few dark pixels in a bright part and the other way round, so that ranks 3 and 4 differ.
    for (int y = 100; y < 200; ++y) std::fill_n(&picture[static_cast<std::size_t>(y * kRangePictureStep)], 200, 200);
    for (int k = 0; k < 60; ++k) {
      picture[(100 + random_() % 100) * kRangePictureStep + random_() % 200] = static_cast<Ipp8u>(random_());
    }
    for (const Ipp8u flip : {Ipp8u{0}, Ipp8u{255}}) {
      Kernel().patchExtremes(picture.data(), flip, result.data(), work.data());
      for (std::size_t at = 0; at < result.size(); at += 1 + random_() % 37) {
        const Ipp8u* first = &picture[at / kRangeSide * kRangePictureStep + at % kRangeSide];
        std::vector<Ipp8u> patch;
        for (int row = 0; row < 32; ++row) {
          patch.insert(patch.end(), first + row * kRangePictureStep, first + row * kRangePictureStep + 32);
        }
        const auto wanted = patch.begin() + (flip ? 1019 : 4);
        std::nth_element(patch.begin(), wanted, patch.end());
        ASSERT_EQ(result[at], *wanted) << at << " of " << kinds;
      }
    }
  }
}

TEST_P(PatchLevels, ShapesAndTheirScores) {
  for (int round = 0; round < 60; ++round) {
    const int coordinates = round % 2 ? 80 : 8, deformations = round % 3 ? 32 : 1;
    const auto count = static_cast<std::size_t>(coordinates), rows = static_cast<std::size_t>(deformations);
    const std::vector<float> mean = Floats(count, 0, 255), bends = Floats(count * rows, -0.3F, 0.3F);
    const std::vector<float> values = Floats((rows + 4) * kShapeLanes, -30, 30), angles = Floats(8, -2, 2);
    std::vector<float> parameters = values;
    for (std::size_t k = (rows + 2) * kShapeLanes; k < parameters.size(); ++k) parameters[k] = values[k] / 20 + 1;
    if (round % 5 == 0) parameters[3] = std::numeric_limits<float>::quiet_NaN();
    ShapeRow cosines, sines;
    for (std::size_t k = 0; k < 8; ++k) cosines[k] = std::cos(angles[k]), sines[k] = std::sin(angles[k]);
    const ShapeModel model{mean.data(), bends.data(), coordinates, deformations, 255};
    const auto* asRows = reinterpret_cast<const ShapeRow*>(parameters.data());
    std::vector<float> a(count * kShapeLanes), b = a;
    auto* nodes = reinterpret_cast<ShapeRow*>(a.data());
    Base().patch.bendShapes(model, asRows, cosines, sines, nodes);
    Kernel().bendShapes(model, asRows, cosines, sines, reinterpret_cast<ShapeRow*>(b.data()));
    for (std::size_t k = 0; k < a.size(); ++k) {
      ASSERT_TRUE(sameBits(&a[k], &b[k], 1) || (std::isnan(a[k]) && std::isnan(b[k]))) << round << ", " << k;
    }

    std::vector<float> scores = Floats(count / 2 * kScoreTableSize, 0.5F, 1.5F);
    if (round % 4 == 0) {
      for (std::size_t k = 0; k < scores.size() / 100; ++k) scores[random_() % scores.size()] = 0;
    }
    const ScoreTables tables{scores.data(), coordinates / 2, 3, round % 7 ? 253.0F : 4.0F, 253};
    ShapeRow base = {}, level = {};
    std::vector<Ipp8u> baseMissing(count / 2 + 1, 7), missing = baseMissing;
    const bool known = Base().patch.meanScores(tables, nodes, base, baseMissing.data());
    EXPECT_EQ(Kernel().meanScores(tables, nodes, level, missing.data()), known);
    EXPECT_EQ(missing, baseMissing);
    EXPECT_EQ(missing.back(), 7);
    EXPECT_TRUE(sameBits(base, level, kShapeLanes)) << round;
  }
}

// One unknown score, and then that score in a node that doesn't count.
TEST_P(PatchLevels, UnknownScoresAreTold) {
  std::vector<float> scores(2 * kScoreTableSize, 1.0F);
  ShapeRow nodes[4], means;
  Ipp8u missing[2];
  for (int lane = 0; lane < kShapeLanes; ++lane) {
    nodes[0][lane] = nodes[1][lane] = 50.0F + static_cast<float>(10 * lane);
    nodes[2][lane] = nodes[3][lane] = 101.9F;
  }
  const ScoreTables tables{scores.data(), 2, 3, 253, 253};
  EXPECT_TRUE(Kernel().meanScores(tables, nodes, means, missing));
  for (const float mean : means) EXPECT_EQ(mean, 1.0F);
  scores[kScoreTableSize + 50 * kScoreTableSide + 50] = 0.5F;
  EXPECT_TRUE(Kernel().meanScores(tables, nodes, means, missing));
  for (const float mean : means) EXPECT_EQ(mean, 0.75F);
  scores[55 * kScoreTableSide + 55] = 0;
  EXPECT_FALSE(Kernel().meanScores(tables, nodes, means, missing));
  EXPECT_EQ(missing[0], 1 << 6);
  EXPECT_EQ(missing[1], 0);
  nodes[1][6] = 253;
  EXPECT_TRUE(Kernel().meanScores(tables, nodes, means, missing));
  EXPECT_EQ(means[6], 0.5F);
  nodes[2][6] = 3;
  EXPECT_TRUE(Kernel().meanScores(tables, nodes, means, missing));
  EXPECT_EQ(means[6], 0.0F);
}

INSTANTIATE_TEST_SUITE_P(Levels, PatchLevels, testing::Values(CpuLevel::base, CpuLevel::sse41, CpuLevel::avx2),
                         levelName);

TEST(VectorPrimitives, WorkInPlaceOnEveryLength) {
  std::mt19937 random(2);
  for (int length = 1; length < 70; ++length) {
    std::vector<Ipp8u> bytes(static_cast<std::size_t>(length));
    for (Ipp8u& value : bytes) value = static_cast<Ipp8u>(random());
    std::vector<float> values(static_cast<std::size_t>(length) + 1, 7.0F);
    ASSERT_EQ(ippsConvert_8u32f(bytes.data(), values.data(), length), ippStsNoErr);
    ASSERT_EQ(ippsMulC_32f_I(0.01F, values.data(), length), ippStsNoErr);
    ASSERT_EQ(ippsAddC_32f_I(-1.3F, values.data(), length), ippStsNoErr);
    ASSERT_EQ(ippsThreshold_LTValGTVal_32f_I(values.data(), length, -0.5F, -0.75F, 0.5F, 2.0F), ippStsNoErr);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
      const float x = static_cast<float>(bytes[i]) * 0.01F + -1.3F;
      ASSERT_EQ(values[i], x < -0.5F ? -0.75F : x > 0.5F ? 2.0F : x);
    }
    EXPECT_EQ(values.back(), 7.0F);
  }
}

TEST(VectorPrimitives, RefuseNullAndEmptyVectors) {
  float values[2] = {1, 2}, product = 5;
  const Ipp8u byte = 0;
  EXPECT_EQ(ippsConvert_8u32f(nullptr, values, 2), ippStsNullPtrErr);
  EXPECT_EQ(ippsConvert_8u32f(&byte, values, 0), ippStsSizeErr);
  EXPECT_EQ(ippsMulC_32f_I(2, nullptr, 2), ippStsNullPtrErr);
  EXPECT_EQ(ippsMulC_32f_I(2, values, -1), ippStsSizeErr);
  EXPECT_EQ(ippsAddC_32f_I(2, nullptr, 2), ippStsNullPtrErr);
  EXPECT_EQ(ippsAddC_32f_I(2, values, 0), ippStsSizeErr);
  EXPECT_EQ(ippsThreshold_LTValGTVal_32f_I(nullptr, 2, 0, 0, 0, 0), ippStsNullPtrErr);
  EXPECT_EQ(ippsThreshold_LTValGTVal_32f_I(values, 0, 0, 0, 0, 0), ippStsSizeErr);
  EXPECT_EQ(ippsDotProd_32f(values, nullptr, 2, &product), ippStsNullPtrErr);
  EXPECT_EQ(ippsDotProd_32f(values, values, 2, nullptr), ippStsNullPtrErr);
  EXPECT_EQ(ippsDotProd_32f(values, values, 0, &product), ippStsSizeErr);
  EXPECT_EQ(product, 5.0F);
  EXPECT_EQ(values[1], 2.0F);
}

}  // namespace
