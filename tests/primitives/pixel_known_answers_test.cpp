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

TEST(Gray, FollowsMemoryOrderAndTruncates) {
  const Bytes pixels = {255, 255, 255, 1, 1, 1, 0, 0, 1, 1, 0, 0, 255, 0, 0, 0, 255, 0, 0, 0, 255, 10, 20, 30};
  Bytes gray(8);
  ASSERT_EQ(ippiRGBToGray_8u_C3C1R(pixels.data(), 24, gray.data(), 8, {8, 1}), ippStsNoErr);
  EXPECT_EQ(gray, (Bytes{255, 1, 0, 0, 76, 149, 29, 18}));
}

TEST(Gray, CoefficientsOfVideoGiveTheFixedWeights) {
  const Ipp32f coefficients[3] = {0.299f, 0.587f, 0.114f};
  for (int first = 0; first < 256; first += 5) {
    Bytes pixels(256 * 4);
    for (std::size_t i = 0; i < 256; ++i) {
      pixels[4 * i] = static_cast<Ipp8u>(first);
      pixels[4 * i + 1] = static_cast<Ipp8u>(i);
      pixels[4 * i + 2] = static_cast<Ipp8u>(i * 7);
      pixels[4 * i + 3] = static_cast<Ipp8u>(i * 3);
    }
    Bytes fixed(256), free(256);
    ASSERT_EQ(ippiRGBToGray_8u_AC4C1R(pixels.data(), 1024, fixed.data(), 256, {256, 1}), ippStsNoErr);
    ASSERT_EQ(ippiColorToGray_8u_AC4C1R(pixels.data(), 1024, free.data(), 256, {256, 1}, coefficients), ippStsNoErr);
    ASSERT_EQ(fixed, free);
  }
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

TEST(Transpose, ExchangesWidthAndHeight) {
  const Bytes picture = {1, 1, 1, 2, 2, 2,  //
                         3, 3, 3, 4, 4, 4,  //
                         5, 5, 5, 6, 6, 6};
  Bytes turned(18);
  ASSERT_EQ(ippiTranspose_8u_C3R(picture.data(), 6, turned.data(), 9, {2, 3}), ippStsNoErr);
  EXPECT_EQ(turned, (Bytes{1, 1, 1, 3, 3, 3, 5, 5, 5, 2, 2, 2, 4, 4, 4, 6, 6, 6}));
}

TEST(Mirror, LeavesAlphaAtItsAddress) {
  Bytes rows = counting(24), columns = counting(24);
  ASSERT_EQ(ippiMirror_8u_AC4IR(rows.data(), 8, {2, 3}, ippAxsHorizontal), ippStsNoErr);
  EXPECT_EQ(rows, (Bytes{17, 18, 19, 4,  21, 22, 23, 8,   //
                         9,  10, 11, 12, 13, 14, 15, 16,  //
                         1,  2,  3,  20, 5,  6,  7,  24}));
  ASSERT_EQ(ippiMirror_8u_AC4IR(columns.data(), 12, {3, 2}, ippAxsVertical), ippStsNoErr);
  EXPECT_EQ(columns, (Bytes{9,  10, 11, 4,  5,  6,  7,  8,  1,  2,  3,  12,  //
                            21, 22, 23, 16, 17, 18, 19, 20, 13, 14, 15, 24}));
}

TEST(SwapChannels, TakesTheOrderAsSourceChannels) {
  const Bytes three = counting(3);
  Bytes turned(3), four = counting(4);
  const int order3[3] = {2, 0, 1}, order4[4] = {3, 2, 0, 0};
  ASSERT_EQ(ippiSwapChannels_8u_C3R(three.data(), 3, turned.data(), 3, {1, 1}, order3), ippStsNoErr);
  ASSERT_EQ(ippiSwapChannels_8u_C4IR(four.data(), 4, {1, 1}, order4), ippStsNoErr);
  EXPECT_EQ(turned, (Bytes{3, 1, 2}));
  EXPECT_EQ(four, (Bytes{4, 3, 1, 1}));
}

TEST(Border, ExtendsEdgesAndCorners) {
  const Bytes picture = {1, 2,  //
                         3, 4};
  Bytes bordered(25);
  ASSERT_EQ(ippiCopyReplicateBorder_8u_C1R(picture.data(), 2, {2, 2}, bordered.data(), 5, {5, 5}, 2, 2), ippStsNoErr);
  EXPECT_EQ(bordered, (Bytes{1, 1, 1, 2, 2,  //
                             1, 1, 1, 2, 2,  //
                             1, 1, 1, 2, 2,  //
                             3, 3, 3, 4, 4,  //
                             3, 3, 3, 4, 4}));
}

TEST(Border, FillsWithTheValueOfEachChannel) {
  const Bytes picture = {1, 2, 3};
  const Ipp8u value[3] = {7, 8, 9};
  Bytes bordered(18);
  ASSERT_EQ(ippiCopyConstBorder_8u_C3R(picture.data(), 3, {1, 1}, bordered.data(), 9, {3, 2}, 1, 1, value),
            ippStsNoErr);
  EXPECT_EQ(bordered, (Bytes{7, 8, 9, 7, 8, 9, 7, 8, 9, 7, 8, 9, 1, 2, 3, 7, 8, 9}));
}

TEST(AlphaComp, OpaqueClearAndHalf) {
  const Bytes a = {10, 20, 30, 255, 10, 20, 30, 0, 200, 100, 0, 128};
  const Bytes b = {90, 80, 70, 200, 90, 80, 70, 200, 100, 200, 255, 255};
  Bytes over(12);
  ASSERT_EQ(ippiAlphaComp_8u_AC4R(a.data(), 12, b.data(), 12, over.data(), 12, {3, 1}, ippAlphaOver), ippStsNoErr);
  EXPECT_EQ(over, (Bytes{10, 20, 30, 255, 70, 62, 54, 200, 149, 149, 127, 255}));
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
