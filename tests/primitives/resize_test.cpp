#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "primitives/ippi.h"
#include "tests/primitives/guarded_picture.h"
#include "tests/primitives/resample_reference.h"

namespace {

using Resize8u = IppStatus (*)(const Ipp8u*, IppiSize, int, IppiRect, Ipp8u*, int, IppiSize, double, double, int);
using Resize32f = IppStatus (*)(const Ipp32f*, IppiSize, int, IppiRect, Ipp32f*, int, IppiSize, double, double, int);

Resize8u resize8u(int channels) {
  return channels == 1 ? ippiResize_8u_C1R : channels == 3 ? ippiResize_8u_C3R : ippiResize_8u_C4R;
}

Resize32f resize32f(int channels) {
  return channels == 1 ? ippiResize_32f_C1R : channels == 3 ? ippiResize_32f_C3R : ippiResize_32f_C4R;
}

IppiRect wholeOf(IppiSize size) { return {0, 0, size.width, size.height}; }

// How many pixels a side comes to, by the rule of the primitive.
int sideAfter(int side, double factor) { return std::max(1, static_cast<int>(side * factor + 1e-7)); }

constexpr Layout kTight{0, Against::pageAfter, false};

template <class Pixel>
double reference(int interpolation, const Pixel& pixel, IppiSize size, int i, int j, double xFactor, double yFactor) {
  return interpolation == IPPI_INTER_SUPER ? referenceAreaMean(pixel, size.width, size.height, i, j, xFactor, yFactor)
                                           : referenceLanczos(pixel, size.width, size.height, i, j, xFactor, yFactor);
}

struct Comparison {
  long samples = 0;
  long different = 0;
  double worst = 0.0;

  void add(double actual, double expected) {
    ++samples;
    different += actual != std::floor(expected + 0.5);
    worst = std::max(worst, std::abs(actual - expected));
  }
};

class ResizeToReference : public testing::TestWithParam<int> {
 protected:
  // Random sides, layouts and factors up to `largest`; small sources with a negative step among them.
  void compare(int interpolation, double largest, Comparison& comparison) {
    const IppiSize size{1 + static_cast<int>(random_() % 70), 1 + static_cast<int>(random_() % 70)};
    const double xFactor = std::max(0.5 / size.width, factor(interpolation, largest));
    const double yFactor = random_() % 2 != 0 ? std::max(xFactor, 0.5 / size.height)
                                              : std::max(0.5 / size.height, factor(interpolation, largest));
    const Layout layout{static_cast<int>(random_() % 9), random_() % 2 != 0 ? Against::pageAfter : Against::pageBefore,
                        random_() % 2 != 0};
    compareOne(interpolation, size, xFactor, yFactor, layout, comparison);
  }

  void compareOne(int interpolation, IppiSize size, double xFactor, double yFactor, Layout layout,
                  Comparison& comparison) {
    const int channels = GetParam();
    const GuardedPicture source(size, channels, layout, random_);
    const IppiSize outSize{sideAfter(size.width, xFactor), sideAfter(size.height, yFactor)};
    const GuardedPicture out(outSize, channels, layout, random_);
    ASSERT_EQ(ippStsNoErr, resize8u(channels)(source.pixels(), size, source.step(), wholeOf(size), out.pixels(),
                                              out.step(), outSize, xFactor, yFactor, interpolation));
    for (int k = 0; k < channels; ++k) {
      const auto pixel = [&](int x, int y) -> double { return source.at(x, y, k); };
      for (int j = 0; j < outSize.height; ++j) {
        for (int i = 0; i < outSize.width; ++i) {
          const double expected = reference(interpolation, pixel, size, i, j, xFactor, yFactor);
          comparison.add(out.at(i, j, k), std::clamp(expected, 0.0, 255.0));
        }
      }
    }
  }

  double factor(int interpolation, double largest) {
    const double smallest = interpolation == IPPI_INTER_SUPER ? 0.02 : 1.0;
    return std::uniform_real_distribution<double>(smallest, largest)(random_);
  }

  std::mt19937 random_{20240501};
};

TEST_P(ResizeToReference, AreaMeanIsRoundedToTheNearest) {
  Comparison comparison;
  for (int round = 0; round < 150; ++round) compare(IPPI_INTER_SUPER, round % 3 == 0 ? 0.2 : 1.0, comparison);
  EXPECT_LT(comparison.worst, 0.53);
  EXPECT_LT(comparison.different, comparison.samples / 100);
}

TEST_P(ResizeToReference, SixTapsAreRoundedToTheNearest) {
  Comparison comparison;
  for (int round = 0; round < 25; ++round) compare(IPPI_INTER_LANCZOS, 3.0, comparison);
  EXPECT_LT(comparison.worst, 0.6);
  EXPECT_LT(comparison.different, comparison.samples / 100);
}

// Thumbnails cover more rows than 16 bits can add up, and more columns than the short weights take.
TEST_P(ResizeToReference, VeryLargeFootprints) {
  Comparison comparison;
  for (const int length : {3000, 65535}) {
    const int across = length == 3000 ? 5 : 1;
    compareOne(IPPI_INTER_SUPER, {across, length}, 1.0, 2.0 / length, kTight, comparison);
    compareOne(IPPI_INTER_SUPER, {length, across}, 2.0 / length, 1.0, kTight, comparison);
  }
  EXPECT_LT(comparison.worst, 0.53);
}

TEST_P(ResizeToReference, FlatStaysFlat) {
  const int channels = GetParam();
  for (int round = 0; round < 120; ++round) {
    const IppiSize size{1 + static_cast<int>(random_() % 300), 1 + static_cast<int>(random_() % 300)};
    const bool shrinks = round % 2 == 0;
    const double factor = shrinks ? std::uniform_real_distribution<double>(0.005, 1.0)(random_)
                                  : std::uniform_real_distribution<double>(1.0, 2.0)(random_);
    const IppiSize outSize{sideAfter(size.width, factor), sideAfter(size.height, factor)};
    const auto samples = static_cast<std::size_t>(size.width * size.height * channels);
    const auto value = static_cast<Ipp8u>(random_());
    const std::vector<Ipp8u> source(samples, value);
    std::vector<Ipp8u> out(static_cast<std::size_t>(outSize.width * outSize.height * channels), value ^ 0xFF);
    if (std::min(size.width, size.height) * factor < 0.5) continue;
    ASSERT_EQ(ippStsNoErr, resize8u(channels)(source.data(), size, size.width * channels, wholeOf(size), out.data(),
                                              outSize.width * channels, outSize, factor, factor,
                                              shrinks ? IPPI_INTER_SUPER : IPPI_INTER_LANCZOS));
    EXPECT_EQ(out, std::vector<Ipp8u>(out.size(), value)) << size.width << " by " << size.height << " by " << factor;
  }
}

TEST_P(ResizeToReference, FloatsKeepTheirValues) {
  const int channels = GetParam();
  const IppiSize size{23, 17};
  std::vector<Ipp32f> source(static_cast<std::size_t>(size.width * size.height * channels));
  for (Ipp32f& value : source) value = std::uniform_real_distribution<float>(-1000.0F, 1000.0F)(random_);
  for (const double factor : {0.37, 0.9, 1.7}) {
    const IppiSize outSize{sideAfter(size.width, factor), sideAfter(size.height, factor)};
    std::vector<Ipp32f> out(static_cast<std::size_t>(outSize.width * outSize.height * channels));
    const int bytes = channels * static_cast<int>(sizeof(Ipp32f));
    ASSERT_EQ(ippStsNoErr, resize32f(channels)(source.data(), size, size.width * bytes, wholeOf(size), out.data(),
                                               outSize.width * bytes, outSize, factor, factor,
                                               factor < 1.0 ? IPPI_INTER_SUPER : IPPI_INTER_LANCZOS));
    // The table of the six taps differs from the kernel by up to 2e-4 a tap.
    const double tolerance = factor < 1.0 ? 1e-3 : 2.0;
    for (std::size_t k = 0; k < out.size(); ++k) {
      const int place = static_cast<int>(k) / channels, c = static_cast<int>(k) % channels;
      const auto pixel = [&](int x, int y) -> double {
        return source[static_cast<std::size_t>((y * size.width + x) * channels + c)];
      };
      const double expected = reference(factor < 1.0 ? IPPI_INTER_SUPER : IPPI_INTER_LANCZOS, pixel, size,
                                        place % outSize.width, place / outSize.width, factor, factor);
      ASSERT_NEAR(out[k], expected, tolerance) << "factor " << factor << " sample " << k;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Channels, ResizeToReference, testing::Values(1, 3, 4),
                         [](const auto& instance) { return std::string("C").append(std::to_string(instance.param)); });

// With one factor 1.0 the six taps of that axis must come to the pixel itself, whatever its neighbours hold.
TEST(ResizeLanczos, AxisOfFactorOneTakesNothingFromNeighbours) {
  const std::vector<Ipp32f> source{1.0F, 1e30F, 3.0F, -1e30F, 5.0F, 1e30F, 7.0F};
  std::vector<Ipp32f> out(7 * 2);
  ASSERT_EQ(ippStsNoErr, ippiResize_32f_C1R(source.data(), {7, 1}, 28, {0, 0, 7, 1}, out.data(), 28, {7, 2}, 1.0, 2.0,
                                            IPPI_INTER_LANCZOS));
  EXPECT_EQ(std::vector<Ipp32f>(out.begin(), out.begin() + 7), source);
  EXPECT_FLOAT_EQ(out[7], 1.0F);
}

// The mean of a footprint is read from its part inside, and what lies past the last whole footprint isn't read.
TEST(ResizeArea, LastColumnsBeyondTheFootprintsAreIgnored) {
  const std::vector<Ipp8u> source{8, 16, 24, 32, 255};
  Ipp8u out[2] = {};
  ASSERT_EQ(ippStsNoErr,
            ippiResize_8u_C1R(source.data(), {5, 1}, 5, {0, 0, 5, 1}, out, 2, {2, 1}, 0.5, 1.0, IPPI_INTER_SUPER));
  EXPECT_EQ(out[0], 12);
  EXPECT_EQ(out[1], 28);
}

// A factor that is the quotient of two sides leads to the second one, though the product may lie a little below it; a
// factor that is smaller by more than rounding does not.
TEST(ResizeArea, DividedFactorsReachTheWholeSide) {
  const std::vector<Ipp8u> source(300, 200);
  for (int side = 2; side <= 300; ++side) {
    for (int wanted = 2; wanted <= side; ++wanted) {
      const auto lastOf = [&](double exact) {
        std::vector<Ipp8u> out(static_cast<std::size_t>(wanted) + 1, 7);
        EXPECT_EQ(ippStsNoErr, ippiResize_8u_C1R(source.data(), {side, 1}, side, {0, 0, side, 1}, out.data(), wanted + 1,
                                                 {wanted + 1, 1}, exact / side, 1.0, IPPI_INTER_SUPER));
        return std::find(out.begin(), out.end(), 7) - out.begin();
      };
      ASSERT_EQ(lastOf(wanted), wanted) << side;
      ASSERT_EQ(lastOf(wanted - 2e-7), wanted - 1) << side;
    }
  }
}

struct RegionCase {
  const char* name;
  int interpolation;
  double factor;
};

class ResizeRegion : public testing::TestWithParam<RegionCase> {};

TEST_P(ResizeRegion, SmallerDestinationIsACrop) {
  const auto [name, interpolation, factor] = GetParam();
  std::mt19937 random(7);
  const IppiSize size{31, 29};
  const GuardedPicture source(size, 3, kTight, random);
  const IppiSize whole{sideAfter(31, factor), sideAfter(29, factor)}, part{whole.width - 2, whole.height - 3};
  const GuardedPicture full(whole, 3, kTight, random), crop(whole, 3, kTight, random);
  const std::vector<Ipp8u> old = crop.bytes();
  ippiResize_8u_C3R(source.pixels(), size, source.step(), wholeOf(size), full.pixels(), full.step(), whole, factor,
                    factor, interpolation);
  ASSERT_EQ(ippStsNoErr, ippiResize_8u_C3R(source.pixels(), size, source.step(), wholeOf(size), crop.pixels(),
                                           crop.step(), part, factor, factor, interpolation));
  for (int y = 0; y < whole.height; ++y) {
    for (int x = 0; x < whole.width; ++x) {
      const bool inside = x < part.width && y < part.height;
      const Ipp8u kept = old[static_cast<std::size_t>(y * crop.step() + x * 3 + 1)];
      ASSERT_EQ(crop.at(x, y, 1), inside ? full.at(x, y, 1) : kept) << x << " " << y;
    }
  }
}

TEST_P(ResizeRegion, SourceRegionActsAsAnImageOfItsOwn) {
  const auto [name, interpolation, factor] = GetParam();
  std::mt19937 random(8);
  const IppiSize size{31, 29};
  const GuardedPicture source(size, 1, kTight, random);
  // The region reaches beyond the image and is cut to 20 by 18.
  const IppiRect region{11, 11, 1000, 1000};
  const GuardedPicture cut({20, 18}, 1, kTight, random);
  for (int y = 0; y < 18; ++y) {
    for (int x = 0; x < 20; ++x) cut.at(x, y, 0) = source.at(11 + x, 11 + y, 0);
  }
  const IppiSize outSize{sideAfter(20, factor), sideAfter(18, factor)};
  const GuardedPicture a(outSize, 1, kTight, random), b(outSize, 1, kTight, random);
  ASSERT_EQ(ippStsNoErr, ippiResize_8u_C1R(source.pixels(), size, source.step(), region, a.pixels(), a.step(), outSize,
                                           factor, factor, interpolation));
  ASSERT_EQ(ippStsNoErr, ippiResize_8u_C1R(cut.pixels(), {20, 18}, cut.step(), {0, 0, 20, 18}, b.pixels(), b.step(),
                                           outSize, factor, factor, interpolation));
  EXPECT_EQ(a.bytes(), b.bytes());
}

INSTANTIATE_TEST_SUITE_P(Kinds, ResizeRegion,
                         testing::Values(RegionCase{"Area", IPPI_INTER_SUPER, 0.613},
                                         RegionCase{"AreaLarge", IPPI_INTER_SUPER, 0.25},
                                         RegionCase{"SixTaps", IPPI_INTER_LANCZOS, 1.37},
                                         RegionCase{"Copy", IPPI_INTER_LANCZOS, 1.0}),
                         [](const auto& instance) { return std::string(instance.param.name); });

struct StatusCase {
  const char* name;
  IppiSize srcSize;
  IppiRect srcRoi;
  IppiSize dstRoi;
  double xFactor;
  double yFactor;
  int interpolation;
  IppStatus expected;
};

class ResizeStatus : public testing::TestWithParam<StatusCase> {};

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr IppiRect kTen{0, 0, 10, 10};

TEST_P(ResizeStatus, NothingIsWrittenOnRefusal) {
  const StatusCase& c = GetParam();
  const std::vector<Ipp8u> source(400, 1);
  std::vector<Ipp8u> out(400, 5);
  EXPECT_EQ(c.expected, ippiResize_8u_C4R(source.data(), c.srcSize, 40, c.srcRoi, out.data(), 40, c.dstRoi, c.xFactor,
                                          c.yFactor, c.interpolation));
  const bool isWritten = std::count(out.begin(), out.end(), 5) != 400;
  EXPECT_EQ(isWritten, c.expected == ippStsNoErr);
}

INSTANTIATE_TEST_SUITE_P(
    Checks, ResizeStatus,
    testing::Values(StatusCase{"NoWidth", {0, 10}, kTen, {5, 5}, 0.5, 0.5, 8, ippStsSizeErr},
                    StatusCase{"NegativeHeight", {10, -10}, kTen, {5, 5}, 0.5, 0.5, 8, ippStsSizeErr},
                    StatusCase{"EmptyRegion", {10, 10}, {0, 0, 10, 0}, {5, 5}, 0.5, 0.5, 8, ippStsSizeErr},
                    StatusCase{"RegionOutside", {10, 10}, {10, 0, 5, 5}, {5, 5}, 0.5, 0.5, 8, ippStsSizeErr},
                    StatusCase{"RegionFarBefore", {10, 10}, {INT32_MIN, 0, 5, 5}, {5, 5}, 0.5, 0.5, 8, ippStsSizeErr},
                    StatusCase{"EmptyDestination", {10, 10}, kTen, {5, 0}, 0.5, 0.5, 8, ippStsSizeErr},
                    StatusCase{"TooLong", {65536, 1}, {0, 0, 65536, 1}, {5, 5}, 0.5, 1.0, 8, ippStsSizeErr},
                    StatusCase{"UnknownCode", {10, 10}, kTen, {5, 5}, 0.5, 0.5, 4, ippStsBadArgErr},
                    StatusCase{"NotANumber", {10, 10}, kTen, {5, 5}, kNan, 0.5, 8, ippStsBadArgErr},
                    StatusCase{"Infinite", {10, 10}, kTen, {5, 5}, 2.0, kInfinity, 16, ippStsBadArgErr},
                    StatusCase{"Negative", {10, 10}, kTen, {5, 5}, -0.5, 0.5, 8, ippStsResizeNoOperationErr},
                    StatusCase{"Zero", {10, 10}, kTen, {5, 5}, 0.5, 0.0, 8, ippStsResizeNoOperationErr},
                    StatusCase{"JustTooSmall", {10, 10}, kTen, {5, 5}, 0.5, 0.0499, 8, ippStsResizeNoOperationErr},
                    StatusCase{"HalfAPixel", {10, 10}, kTen, {5, 5}, 0.5, 0.05, 8, ippStsNoErr},
                    StatusCase{"AlmostNothing", {10, 10}, kTen, {5, 5}, 1e-300, 1e-300, 8, ippStsResizeNoOperationErr},
                    StatusCase{"TooLargeResult", {10, 10}, kTen, {70000, 5}, 1e4, 0.5, 16, ippStsSizeErr},
                    StatusCase{"Enormous", {10, 10}, kTen, {5, 5}, 1e300, 1e300, 16, ippStsNoErr},
                    StatusCase{"EnormousArea", {10, 10}, kTen, {5, 5}, 1e300, 1e300, 8, ippStsNoErr}),
    [](const auto& instance) { return std::string(instance.param.name); });

TEST(ResizeNull, IsToldBeforeSizes) {
  Ipp8u byte = 0;
  EXPECT_EQ(ippStsNullPtrErr, ippiResize_8u_C1R(nullptr, {0, 0}, 1, {0, 0, 0, 0}, &byte, 1, {0, 0}, 1.0, 1.0, 8));
  EXPECT_EQ(ippStsNullPtrErr, ippiResize_8u_C1R(&byte, {1, 1}, 1, {0, 0, 1, 1}, nullptr, 1, {1, 1}, 1.0, 1.0, 8));
}

}  // namespace
