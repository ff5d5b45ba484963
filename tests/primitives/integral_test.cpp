#include <gtest/gtest.h>

#include "tests/primitives/haar_reference.h"

namespace {

constexpr float kOffset = -16777216.0f;

void expectReferenceIntegrals(Plane<Ipp8u>& src, float val, double valSqr) {
  Plane<float> sum(src.width + 1, src.height + 1, 3, -1.0f), wantedSum = sum;
  Plane<double> sqr(src.width + 1, src.height + 1, 1, -1.0), wantedSqr = sqr;
  ASSERT_EQ(ippiSqrIntegral_8u32f64f_C1R(src.ptr(), src.step(), sum.ptr(), sum.step(), sqr.ptr(), sqr.step(),
                                         {src.width, src.height}, val, valSqr),
            ippStsNoErr);
  referenceIntegrals(src, val, valSqr, wantedSum, wantedSqr);
  EXPECT_TRUE(sameBits(sum, wantedSum)) << src.width << " by " << src.height;
  EXPECT_TRUE(sameBits(sqr, wantedSqr)) << src.width << " by " << src.height;
}

TEST(Integral, MatchesReferenceOnEverySmallWidth) {
  std::mt19937 random(1);
  for (int width = 1; width <= 70; width++) {
    Plane<Ipp8u> src = randomPicture(width, 1 + width % 5, random);
    expectReferenceIntegrals(src, width % 2 == 0 ? kOffset : 0.5f, width % 3 == 0 ? 0.125 : 0.0);
  }
}

// Sums past 2^24 round in single precision, row sums of squares pass 2^31 and 2^32.
TEST(Integral, MatchesReferenceOnLongBrightRows) {
  for (const int width : {33025, 33026, 66052, 70001}) {
    Plane<Ipp8u> src(width, 3, 0, 255);
    src.at(width / 2, 1) = 254;
    expectReferenceIntegrals(src, kOffset, 0.0);
  }
}

TEST(Integral, RefusesInOrderAndWritesNothing) {
  Plane<Ipp8u> src(4, 4, 0, 9);
  Plane<float> sum(8, 8, 0, -1.0f);
  Plane<double> sqr(8, 8, 0, -1.0);
  const auto run = [&](Ipp8u* s, int srcStep, int sumStep, int sqrStep, IppiSize roi) {
    return ippiSqrIntegral_8u32f64f_C1R(s, srcStep, sum.ptr(), sumStep, sqr.ptr(), sqrStep, roi, 0.0f, 0.0);
  };
  EXPECT_EQ(run(nullptr, 1, 1, 1, {0, 0}), ippStsNullPtrErr);
  EXPECT_EQ(run(src.ptr(), 1, 1, 1, {0, 4}), ippStsSizeErr);
  EXPECT_EQ(run(src.ptr(), 1, 1, 1, {4, -1}), ippStsSizeErr);
  EXPECT_EQ(run(src.ptr(), 3, 20, 40, {4, 4}), ippStsStepErr);
  EXPECT_EQ(run(src.ptr(), 4, 19, 40, {4, 4}), ippStsStepErr);
  EXPECT_EQ(run(src.ptr(), 4, 20, 39, {4, 4}), ippStsStepErr);
  EXPECT_EQ(run(src.ptr(), 4, 21, 40, {4, 4}), ippStsNotEvenStepErr);
  EXPECT_EQ(run(src.ptr(), 4, 20, 44, {4, 4}), ippStsNotEvenStepErr);
  EXPECT_EQ(sum.data, std::vector<float>(64, -1.0f));
  EXPECT_EQ(sqr.data, std::vector<double>(64, -1.0));
}

void expectReferenceDeviation(Plane<Ipp8u>& src, IppiRect rect, IppiSize roi) {
  Plane<float> sum(src.width + 1, src.height + 1, 2, 0.0f);
  Plane<double> sqr(src.width + 1, src.height + 1, 1, 0.0);
  referenceIntegrals(src, kOffset, 0.0, sum, sqr);
  Plane<float> norm(roi.width, roi.height, 3, -1.0f), wanted = norm;
  ASSERT_EQ(ippiRectStdDev_32f_C1R(sum.ptr(), sum.step(), sqr.ptr(), sqr.step(), norm.ptr(), norm.step(), roi, rect),
            ippStsNoErr);
  for (int y = 0; y < roi.height; y++) {
    for (int x = 0; x < roi.width; x++) wanted.at(x, y) = referenceDeviation(sum, sqr, x, y, rect);
  }
  EXPECT_TRUE(sameBits(norm, wanted)) << src.width << " by " << src.height;
}

TEST(RectStdDev, MatchesReferenceOnEverySmallWidth) {
  std::mt19937 random(2);
  for (int width = 1; width <= 40; width++) {
    Plane<Ipp8u> src = randomPicture(width + 19, 24, random);
    expectReferenceDeviation(src, {1, 1, 18, 18}, {width, 5});
    expectReferenceDeviation(src, {0, 3, 1, 2}, {width, 19});
  }
}

TEST(RectStdDev, RefusesInOrderAndWritesNothing) {
  Plane<float> sum(9, 9, 0, 0.0f), norm(9, 9, 0, -1.0f);
  Plane<double> sqr(9, 9, 0, 0.0);
  const auto run = [&](float* dst, int sumStep, int sqrStep, int dstStep, IppiSize roi, IppiRect rect) {
    return ippiRectStdDev_32f_C1R(sum.ptr(), sumStep, sqr.ptr(), sqrStep, dst, dstStep, roi, rect);
  };
  EXPECT_EQ(run(nullptr, 1, 1, 1, {0, 0}, {-1, 0, 0, 0}), ippStsNullPtrErr);
  EXPECT_EQ(run(norm.ptr(), 1, 1, 1, {0, 1}, {-1, 0, 0, 0}), ippStsSizeErr);
  EXPECT_EQ(run(norm.ptr(), 35, 72, 16, {4, 2}, {1, 1, 4, 4}), ippStsStepErr);
  EXPECT_EQ(run(norm.ptr(), 36, 71, 16, {4, 2}, {1, 1, 4, 4}), ippStsStepErr);
  EXPECT_EQ(run(norm.ptr(), 36, 72, 15, {4, 2}, {1, 1, 4, 4}), ippStsStepErr);
  EXPECT_EQ(run(norm.ptr(), 37, 72, 16, {4, 2}, {-1, 1, 4, 4}), ippStsNotEvenStepErr);
  EXPECT_EQ(run(norm.ptr(), 36, 76, 16, {4, 2}, {1, 1, 4, 4}), ippStsNotEvenStepErr);
  EXPECT_EQ(run(norm.ptr(), 36, 72, 18, {4, 2}, {1, 1, 4, 4}), ippStsNotEvenStepErr);
  EXPECT_EQ(run(norm.ptr(), 36, 72, 16, {4, 2}, {-1, 1, 4, 4}), ippStsSizeErr);
  EXPECT_EQ(run(norm.ptr(), 36, 72, 16, {4, 2}, {1, 1, 4, 0}), ippStsSizeErr);
  EXPECT_EQ(norm.data, std::vector<float>(81, -1.0f));
}

}  // namespace
