#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <random>
#include <vector>

#include "primitives/ippi.h"
#include "primitives/ipps.h"
#include "tests/primitives/guarded_picture.h"

namespace {

float& floatAt(const GuardedPicture& picture, int x, int y) { return *reinterpret_cast<float*>(&picture.at(x, y, 0)); }

void fillRandom(const GuardedPicture& picture, std::mt19937& random) {
  for (int y = 0; y < picture.size().height; ++y) {
    for (int x = 0; x < picture.size().width; ++x) {
      floatAt(picture, x, y) = std::uniform_real_distribution<float>(-9, 9)(random);
    }
  }
}

// The source has no pixel more than the windows reach, and a page that may not be touched on either side.
TEST(FilterMax, TakesTheLargestOfEachWindowAndReadsNothingElse) {
  std::mt19937 random(1);
  for (int round = 0; round < 60; ++round) {
    const IppiSize roi = {1 + static_cast<int>(random() % 40), 1 + static_cast<int>(random() % 12)};
    const IppiSize mask = {1 + static_cast<int>(random() % 9), 1 + static_cast<int>(random() % 9)};
    const IppiPoint anchor = {static_cast<int>(random()) & 0x7fff, static_cast<int>(random()) & 0x7fff};
    const IppiPoint at = {anchor.x % mask.width, anchor.y % mask.height};
    const Layout layout = {4 * static_cast<int>(random() % 3), random() % 2 ? Against::pageBefore : Against::pageAfter,
                           false};
    GuardedPicture src({roi.width + mask.width - 1, roi.height + mask.height - 1}, sizeof(float), layout, random);
    GuardedPicture dst(roi, sizeof(float), layout, random);
    fillRandom(src, random);
    ASSERT_EQ(
        ippiFilterMax_32f_C1R(&floatAt(src, at.x, at.y), src.step(), &floatAt(dst, 0, 0), dst.step(), roi, mask, at),
        ippStsNoErr);
    for (int y = 0; y < roi.height; ++y) {
      for (int x = 0; x < roi.width; ++x) {
        float expected = floatAt(src, x, y);
        for (int j = 0; j < mask.height; ++j) {
          for (int i = 0; i < mask.width; ++i) expected = std::max(expected, floatAt(src, x + i, y + j));
        }
        ASSERT_EQ(floatAt(dst, x, y), expected) << x << ", " << y;
      }
    }
  }
}

TEST(FilterMax, TellsWhatIsWrong) {
  float image[16] = {}, out = 5;
  const IppiSize one = {1, 1};
  EXPECT_EQ(ippiFilterMax_32f_C1R(nullptr, 16, &out, 4, one, one, {0, 0}), ippStsNullPtrErr);
  EXPECT_EQ(ippiFilterMax_32f_C1R(image, 16, &out, 4, {0, 1}, one, {0, 0}), ippStsSizeErr);
  EXPECT_EQ(ippiFilterMax_32f_C1R(image, 0, &out, 4, one, one, {0, 0}), ippStsStepErr);
  EXPECT_EQ(ippiFilterMax_32f_C1R(image, 16, &out, -4, one, one, {0, 0}), ippStsStepErr);
  EXPECT_EQ(ippiFilterMax_32f_C1R(image, 16, &out, 4, one, {0, 1}, {0, 0}), ippStsMaskSizeErr);
  EXPECT_EQ(ippiFilterMax_32f_C1R(image, 16, &out, 4, one, {2, 2}, {2, 0}), ippStsAnchorErr);
  EXPECT_EQ(ippiFilterMax_32f_C1R(image, 16, &out, 4, one, {2, 2}, {0, -1}), ippStsAnchorErr);
  EXPECT_EQ(out, 5);
}

TEST(ConstBorderOfWords, PutsTheSourceIntoAFrameWithoutRightOrBottomBorder) {
  const Ipp32s src[4] = {1, -2, 0x12345678, 4};
  Ipp32s dst[9];
  std::memset(dst, 0xee, sizeof dst);
  ASSERT_EQ(ippiCopyConstBorder_32s_C1R(src, 8, {2, 2}, dst, 12, {3, 3}, 1, 1, 0x01020304), ippStsNoErr);
  constexpr Ipp32s kFill = 0x01020304;
  const Ipp32s expected[9] = {kFill, kFill, kFill, kFill, 1, -2, kFill, 0x12345678, 4};
  EXPECT_EQ(std::vector<Ipp32s>(dst, dst + 9), std::vector<Ipp32s>(expected, expected + 9));
  EXPECT_EQ(ippiCopyConstBorder_32s_C1R(src, 8, {2, 2}, dst, 12, {3, 3}, 2, 1, 0), ippStsSizeErr);
  EXPECT_EQ(ippiCopyConstBorder_32s_C1R(src, 8, {2, 2}, nullptr, 12, {3, 3}, 1, 1, 0), ippStsNullPtrErr);
}

TEST(VectorMagnitude, AbsAndMaxEvery) {
  std::vector<float> a, b;
  std::mt19937 random(2);
  for (int i = 0; i < 37; ++i) {
    a.push_back(std::uniform_real_distribution<float>(-3, 3)(random));
    b.push_back(std::uniform_real_distribution<float>(-3, 3)(random));
  }
  a[5] = -0.0f;
  std::vector<float> absolute(37), larger = b;
  ASSERT_EQ(ippsAbs_32f(a.data(), absolute.data(), 37), ippStsNoErr);
  ASSERT_EQ(ippsMaxEvery_32f_I(a.data(), larger.data(), 37), ippStsNoErr);
  for (std::size_t i = 0; i < 37; ++i) {
    EXPECT_EQ(absolute[i], a[i] < 0 ? -a[i] : a[i]);
    EXPECT_FALSE(std::signbit(absolute[i]));
    EXPECT_EQ(larger[i], a[i] > b[i] ? a[i] : b[i]);
  }
  ASSERT_EQ(ippsAbs_32f_I(a.data(), 37), ippStsNoErr);
  EXPECT_EQ(a, absolute);
  EXPECT_EQ(ippsAbs_32f_I(nullptr, 1), ippStsNullPtrErr);
  EXPECT_EQ(ippsMaxEvery_32f_I(a.data(), b.data(), 0), ippStsSizeErr);
}

}  // namespace
