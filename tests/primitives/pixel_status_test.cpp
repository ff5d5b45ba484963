// Refusals of what the arguments ask for: the code, and that nothing was written.
#include <gtest/gtest.h>

#include <array>
#include <climits>

#include "primitives/ippi.h"

namespace {

constexpr int kStep = 64;
constexpr Ipp8u kFill[4] = {1, 2, 3, 4};

using Buffer = std::array<Ipp8u, 4 * kStep>;

// Placings that do not fit a destination of 6 by 6, among them sums beyond the end of an int.
struct Placing {
  IppiSize src;
  IppiSize dst;
  int top;
  int left;
};

class BorderPlacing : public testing::TestWithParam<Placing> {};

TEST_P(BorderPlacing, IsRefusedAndNothingWritten) {
  const Placing& p = GetParam();
  const Buffer src{};
  Buffer dst, untouched;
  dst.fill(0x5a);
  untouched.fill(0x5a);
  const auto refuses = [&](auto function, auto... fill) {
    return function(src.data(), kStep, p.src, dst.data(), kStep, p.dst, p.top, p.left, fill...) == ippStsSizeErr;
  };
  EXPECT_TRUE(refuses(ippiCopyConstBorder_8u_C1R, Ipp8u{5}));
  EXPECT_TRUE(refuses(ippiCopyConstBorder_8u_C3R, kFill));
  EXPECT_TRUE(refuses(ippiCopyConstBorder_8u_C4R, kFill));
  EXPECT_TRUE(refuses(ippiCopyReplicateBorder_8u_C1R));
  EXPECT_TRUE(refuses(ippiCopyReplicateBorder_8u_C3R));
  EXPECT_TRUE(refuses(ippiCopyReplicateBorder_8u_C4R));
  EXPECT_EQ(dst, untouched);
}

INSTANTIATE_TEST_SUITE_P(All, BorderPlacing,
                         testing::Values(Placing{{4, 4}, {6, 6}, 3, 0}, Placing{{4, 4}, {6, 6}, 0, 3},
                                         Placing{{7, 4}, {6, 6}, 0, 0}, Placing{{4, 7}, {6, 6}, 0, 0},
                                         Placing{{4, 4}, {6, 6}, -1, 0}, Placing{{4, 4}, {6, 6}, 0, -1},
                                         Placing{{-4, 4}, {6, 6}, 0, 6}, Placing{{4, -4}, {6, 6}, 6, 0},
                                         Placing{{4, 4}, {0, 6}, 0, 0}, Placing{{4, 4}, {6, -6}, 0, 0},
                                         Placing{{4, 4}, {6, 6}, INT_MAX, 0}, Placing{{4, 4}, {6, 6}, 0, INT_MAX},
                                         Placing{{INT_MAX, 4}, {6, 6}, 0, 2}, Placing{{4, INT_MAX}, {6, 6}, 2, 0}));

TEST(PixelArguments, ChannelNumbersOutOfRangeAreRefused) {
  const Ipp8u src[3] = {1, 2, 3};
  Ipp8u dst[4] = {9, 9, 9, 9};
  for (const int wrong : {-1, 3, INT_MAX}) {
    const int order[4] = {0, 1, wrong, 0};
    EXPECT_EQ(ippiSwapChannels_8u_C3R(src, 3, dst, 3, {1, 1}, order), ippStsBadArgErr);
  }
  const int order[4] = {0, 1, 2, 4};
  EXPECT_EQ(ippiSwapChannels_8u_C4IR(dst, 4, {1, 1}, order), ippStsBadArgErr);
  EXPECT_EQ(dst[0] + dst[1] + dst[2] + dst[3], 36);
}

TEST(PixelArguments, UnknownFlipsAndCompositionsAreRefused) {
  Ipp8u pixel[4] = {1, 2, 3, 4};
  EXPECT_EQ(ippiMirror_8u_C4IR(pixel, 4, {1, 1}, 2), ippStsBadArgErr);
  EXPECT_EQ(ippiMirror_8u_C1R(kFill, 4, pixel, 4, {4, 1}, -1), ippStsBadArgErr);
  EXPECT_EQ(ippiAlphaComp_8u_AC4R(kFill, 4, kFill, 4, pixel, 4, {1, 1}, 1), ippStsBadArgErr);
  EXPECT_EQ(pixel[0], 1);
}

TEST(PixelArguments, AHistogramNeedsABin) {
  const Ipp8u src[1] = {5};
  Ipp32s histogram[2] = {-7, -7}, levels[3] = {-7, -7, -7};
  const auto status = [&](int count, int lower, int upper) {
    return ippiHistogramEven_8u_C1R(src, 1, {1, 1}, histogram, levels, count, lower, upper);
  };
  EXPECT_EQ(status(1, 0, 256), ippStsBadArgErr);
  EXPECT_EQ(status(-5, 0, 256), ippStsBadArgErr);
  EXPECT_EQ(status(3, 10, 10), ippStsBadArgErr);
  EXPECT_EQ(ippiHistogramEven_8u_C1R(nullptr, 1, {1, 1}, histogram, levels, 3, 0, 256), ippStsNullPtrErr);
  EXPECT_EQ(ippiHistogramEven_8u_C1R(src, 1, {1, 0}, histogram, levels, 3, 0, 256), ippStsSizeErr);
  EXPECT_EQ(histogram[0] + levels[0], -14);
  // The widest range there is must not overflow.
  EXPECT_EQ(status(3, INT_MIN, INT_MAX), ippStsNoErr);
  EXPECT_EQ(histogram[0] + histogram[1], 1);
}

}  // namespace
