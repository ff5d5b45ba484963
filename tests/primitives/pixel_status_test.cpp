// Refusals: the code, and that nothing was written.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <climits>
#include <functional>
#include <string>
#include <vector>

#include "primitives/ippi.h"

namespace {

constexpr int kStep = 64;
constexpr IppiSize kGood = {4, 4};
constexpr int kOrder[4] = {2, 1, 0, 3};
constexpr Ipp32f kCoefficients[3] = {0.3f, 0.6f, 0.1f};
constexpr Ipp8u kFill[4] = {1, 2, 3, 4};
constexpr Ipp8u kOther[4 * kStep] = {};

using Buffer = std::array<Ipp8u, 4 * kStep>;
using Call = std::function<IppStatus(const Ipp8u* src, Ipp8u* dst, IppiSize size)>;

struct Named {
  const char* name;
  Call call;
};

void PrintTo(const Named& named, std::ostream* out) { *out << named.name; }

template <class Function, class... More>
Call twoImages(Function function, More... more) {
  return [=](const Ipp8u* s, Ipp8u* d, IppiSize n) { return function(s, kStep, d, kStep, n, more...); };
}

template <class Function>
Call toFloat(Function function) {
  return
      [=](const Ipp8u* s, Ipp8u* d, IppiSize n) { return function(s, kStep, reinterpret_cast<Ipp32f*>(d), kStep, n); };
}

// In place: a null of either pointer stands for the one image.
template <class Function, class... More>
Call oneImage(Function function, More... more) {
  return [=](const Ipp8u* s, Ipp8u* d, IppiSize n) { return function(s ? d : nullptr, kStep, n, more...); };
}

template <class Function, class... More>
Call border(Function function, More... more) {
  return [=](const Ipp8u* s, Ipp8u* d, IppiSize n) { return function(s, kStep, n, d, kStep, kGood, 0, 0, more...); };
}

template <int planes>
Call joined(IppStatus (*function)(const Ipp8u* const*, int, Ipp8u*, int, IppiSize)) {
  return [=](const Ipp8u* s, Ipp8u* d, IppiSize n) {
    const Ipp8u* pointers[planes];
    std::fill(pointers, pointers + planes, kOther);
    pointers[planes - 1] = s;
    return function(pointers, kStep, d, kStep, n);
  };
}

std::vector<Named> calls() {
  return {
      {"CopyC1", twoImages(ippiCopy_8u_C1R)},
      {"CopyC3", twoImages(ippiCopy_8u_C3R)},
      {"CopyC4", twoImages(ippiCopy_8u_C4R)},
      {"CopyAC4", twoImages(ippiCopy_8u_AC4R)},
      {"CopyAC4C3", twoImages(ippiCopy_8u_AC4C3R)},
      {"CopyC3AC4", twoImages(ippiCopy_8u_C3AC4R)},
      {"CopyC1C4", twoImages(ippiCopy_8u_C1C4R)},
      {"CopyP3C3", joined<3>(ippiCopy_8u_P3C3R)},
      {"CopyP4C4", joined<4>(ippiCopy_8u_P4C4R)},
      {"ConvertC1", toFloat(ippiConvert_8u32f_C1R)},
      {"ConvertC3", toFloat(ippiConvert_8u32f_C3R)},
      {"ConvertC4", toFloat(ippiConvert_8u32f_C4R)},
      {"SetC1", [](const Ipp8u* s, Ipp8u* d, IppiSize n) { return ippiSet_8u_C1R(9, s ? d : nullptr, kStep, n); }},
      {"SetC4C", [](const Ipp8u* s, Ipp8u* d, IppiSize n) { return ippiSet_8u_C4CR(9, s ? d : nullptr, kStep, n); }},
      {"SwapC3", twoImages(ippiSwapChannels_8u_C3R, kOrder)},
      {"SwapC4I", oneImage(ippiSwapChannels_8u_C4IR, kOrder)},
      {"MirrorC1I", oneImage(ippiMirror_8u_C1IR, ippAxsHorizontal)},
      {"MirrorC3I", oneImage(ippiMirror_8u_C3IR, ippAxsVertical)},
      {"MirrorC4I", oneImage(ippiMirror_8u_C4IR, ippAxsVertical)},
      {"MirrorAC4I", oneImage(ippiMirror_8u_AC4IR, ippAxsHorizontal)},
      {"MirrorC1", twoImages(ippiMirror_8u_C1R, ippAxsHorizontal)},
      {"TransposeC1", twoImages(ippiTranspose_8u_C1R)},
      {"TransposeC3", twoImages(ippiTranspose_8u_C3R)},
      {"TransposeC4", twoImages(ippiTranspose_8u_C4R)},
      {"ConstBorderC1", border(ippiCopyConstBorder_8u_C1R, Ipp8u{5})},
      {"ConstBorderC3", border(ippiCopyConstBorder_8u_C3R, kFill)},
      {"ConstBorderC4", border(ippiCopyConstBorder_8u_C4R, kFill)},
      {"ReplicateBorderC1", border(ippiCopyReplicateBorder_8u_C1R)},
      {"ReplicateBorderC3", border(ippiCopyReplicateBorder_8u_C3R)},
      {"ReplicateBorderC4", border(ippiCopyReplicateBorder_8u_C4R)},
      {"RGBToGrayC3", twoImages(ippiRGBToGray_8u_C3C1R)},
      {"RGBToGrayAC4", twoImages(ippiRGBToGray_8u_AC4C1R)},
      {"ColorToGrayC3", twoImages(ippiColorToGray_8u_C3C1R, kCoefficients)},
      {"ColorToGrayAC4", twoImages(ippiColorToGray_8u_AC4C1R, kCoefficients)},
      {"AlphaCompUpper",
       [](const Ipp8u* s, Ipp8u* d, IppiSize n) {
         return ippiAlphaComp_8u_AC4R(s, kStep, kOther, kStep, d, kStep, n, ippAlphaOver);
       }},
      {"AlphaCompLower", [](const Ipp8u* s, Ipp8u* d, IppiSize n) {
         return ippiAlphaComp_8u_AC4R(kOther, kStep, s, kStep, d, kStep, n, ippAlphaOver);
       }}};
}

class PixelStatus : public testing::TestWithParam<Named> {
 protected:
  PixelStatus() { dst_.fill(0x5a); }

  void expectRefusal(IppStatus status, IppStatus wanted) const {
    EXPECT_EQ(status, wanted);
    Buffer untouched;
    untouched.fill(0x5a);
    EXPECT_EQ(dst_, untouched);
  }

  alignas(16) Buffer src_{};
  alignas(16) Buffer dst_;
};

TEST_P(PixelStatus, NullPointersAreRefused) {
  expectRefusal(GetParam().call(nullptr, dst_.data(), kGood), ippStsNullPtrErr);
  expectRefusal(GetParam().call(src_.data(), nullptr, kGood), ippStsNullPtrErr);
}

TEST_P(PixelStatus, SizesBelowOneAreRefused) {
  for (const IppiSize size : {IppiSize{0, 4}, {4, 0}, {-1, 4}, {4, -1}, {INT_MIN, INT_MIN}, {0, 0}}) {
    expectRefusal(GetParam().call(src_.data(), dst_.data(), size), ippStsSizeErr);
  }
}

TEST_P(PixelStatus, GoodArgumentsAreTaken) {
  alignas(16) std::array<Ipp8u, 4 * kStep> same = dst_;
  EXPECT_EQ(GetParam().call(src_.data(), same.data(), kGood), ippStsNoErr);
}

INSTANTIATE_TEST_SUITE_P(All, PixelStatus, testing::ValuesIn(calls()),
                         [](const auto& instance) { return std::string(instance.param.name); });

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
