// Small pictures whose answers were worked out by hand.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <vector>

#include "primitives/ippi.h"

namespace {

using Bytes = std::vector<Ipp8u>;

Bytes counting(std::size_t count) {
  Bytes bytes(count);
  for (std::size_t i = 0; i < count; ++i) bytes[i] = static_cast<Ipp8u>(i + 1);
  return bytes;
}

TEST(Gray, UnusualCoefficientsSaturate) {
  const Bytes pixels = {0, 10, 200};
  const auto gray = [&](Ipp32f c0, Ipp32f c1, Ipp32f c2) {
    const Ipp32f coefficients[3] = {c0, c1, c2};
    Ipp8u value = 77;
    EXPECT_EQ(ippiColorToGray_8u_C3C1R(pixels.data(), 3, &value, 1, {1, 1}, coefficients), ippStsNoErr);
    return value;
  };
  EXPECT_EQ(gray(0, 0, 2), 255);
  EXPECT_EQ(gray(0, -1, 0), 0);
  EXPECT_EQ(gray(0, 2, 0), 20);
  EXPECT_EQ(gray(0, -1, 0.5f), 90);
  EXPECT_EQ(gray(0, 1e30f, 1e30f), 255);
  EXPECT_EQ(gray(NAN, NAN, NAN), 0);
}

// With a clear lower image a colour is its product with the upper alpha; all products of two bytes.
TEST(AlphaComp, MultipliesBytesByTheRule) {
  const Bytes clear(256 * 4);
  for (unsigned alpha = 0; alpha < 256; ++alpha) {
    Bytes upper(256 * 4, static_cast<Ipp8u>(alpha)), over(256 * 4);
    for (std::size_t v = 0; v < 256; ++v) upper[4 * v] = static_cast<Ipp8u>(v);
    ASSERT_EQ(ippiAlphaComp_8u_AC4R(upper.data(), 1024, clear.data(), 1024, over.data(), 1024, {256, 1}, ippAlphaOver),
              ippStsNoErr);
    for (unsigned v = 0; v < 256; ++v) {
      const unsigned t = alpha * v;
      ASSERT_EQ(over[4 * v], (t + t / 256 + 1) / 256) << alpha << " times " << v;
    }
  }
}

TEST(Histogram, CountsEveryGrayValueIntoItsBin) {
  const Bytes picture = {0, 0, 255, 9, 7, 255, 255, 9};
  std::array<Ipp32s, 256> histogram{};
  std::array<Ipp32s, 257> levels{};
  ASSERT_EQ(ippiHistogramEven_8u_C1R(picture.data(), 4, {3, 2}, histogram.data(), levels.data(), 257, 0, 256),
            ippStsNoErr);
  EXPECT_EQ(histogram[0], 2);
  EXPECT_EQ(histogram[7], 1);
  EXPECT_EQ(histogram[9], 0);
  EXPECT_EQ(histogram[255], 3);
  EXPECT_EQ(levels[0], 0);
  EXPECT_EQ(levels[256], 256);
}

TEST(Histogram, BinsAreHalfOpenAndLeaveOutTheRest) {
  const Bytes picture = counting(100);
  std::array<Ipp32s, 3> histogram{};
  std::array<Ipp32s, 4> levels{};
  ASSERT_EQ(ippiHistogramEven_8u_C1R(picture.data(), 10, {10, 10}, histogram.data(), levels.data(), 4, 11, 41),
            ippStsNoErr);
  EXPECT_EQ(levels, (std::array<Ipp32s, 4>{11, 21, 31, 41}));
  EXPECT_EQ(histogram, (std::array<Ipp32s, 3>{10, 10, 10}));
}

}  // namespace
