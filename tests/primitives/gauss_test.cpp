// The Gaussian filter: its bits against a plain computation in single precision, its meaning against one in double
// precision, on pictures between pages that may not be touched.
#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <limits>
#include <random>
#include <vector>

#include "primitives/ippi.h"
#include "tests/primitives/gauss_reference.h"
#include "tests/primitives/guarded_picture.h"

namespace {

struct Case {
  int width, height, kernel;
  float sigma;
};

// Sides below, at and above the kernel's and the vectors'; the last ones are worked on in several tiles.
const Case kCases[] = {{1, 1, 3, 0.5F},      {2, 9, 3, 1.0F},    {7, 3, 5, 1.3F},        {8, 8, 7, 4.0F},
                       {9, 5, 41, 20.0F},    {37, 6, 9, 2.0F},   {130, 11, 21, 9.0F},    {64, 64, 65, 42.7F},
                       {3, 90, 51, 30.0F},   {300, 17, 3, 2.0F}, {401, 140, 121, 80.0F}, {70, 400, 201, 133.0F},
                       {2500, 40, 33, 22.0F}};

class Gauss : public testing::Test {
 protected:
  float& at(const GuardedPicture& picture, int x, int y) { return *reinterpret_cast<float*>(&picture.at(4 * x, y, 0)); }

  // Floats in the bytes of a guarded picture.
  GuardedPicture guarded(int width, int height, Against against) {
    return {{4 * width, height}, 1, {12, against, false}, random_};
  }

  GaussPlane<float> filtered(const GaussPlane<float>& plane, int kernel, float sigma, Against against) {
    const GuardedPicture source = guarded(plane.width, plane.height, against);
    const GuardedPicture target = guarded(plane.width, plane.height, against);
    for (int y = 0; y < plane.height; ++y) {
      for (int x = 0; x < plane.width; ++x) at(source, x, y) = plane.at(x, y);
    }
    const IppiSize size = {plane.width, plane.height};
    int bytes = 0;
    EXPECT_EQ(ippiFilterGaussGetBufferSize_32f_C1R(size, kernel, &bytes), ippStsNoErr);
    const GuardedPicture buffer({bytes, 1}, 1, {0, against, false}, random_);
    const std::vector<Ipp8u> before = target.bytes();
    EXPECT_EQ(ippiFilterGaussBorder_32f_C1R(reinterpret_cast<const float*>(source.pixels()), source.step(),
                                            reinterpret_cast<float*>(target.pixels()), target.step(), size, kernel,
                                            sigma, 0, 0.0F, buffer.pixels()),
              ippStsNoErr);
    GaussPlane<float> result(plane.width, plane.height);
    for (int y = 0; y < plane.height; ++y) {
      for (int x = 0; x < plane.width; ++x) {
        result.values[static_cast<std::size_t>(y * plane.width + x)] = at(target, x, y);
        std::memcpy(&at(target, x, y), &before[static_cast<std::size_t>(y * target.step() + 4 * x)], 4);
      }
    }
    EXPECT_EQ(target.bytes(), before) << "written between the rows";
    return result;
  }

  GaussPlane<float> randomPlane(int width, int height) {
    GaussPlane<float> plane(width, height);
    for (float& value : plane.values) value = std::uniform_real_distribution<float>(0.0F, 255.0F)(random_);
    return plane;
  }

  std::mt19937 random_{91};
};

TEST_F(Gauss, GivesTheBitsOfThePlainComputation) {
  for (const Case& c : kCases) {
    const GaussPlane<float> plane = randomPlane(c.width, c.height);
    const GaussPlane<float> expected = gaussFiltered(plane, c.kernel, c.sigma);
    for (const Against against : {Against::pageBefore, Against::pageAfter}) {
      EXPECT_EQ(filtered(plane, c.kernel, c.sigma, against).values, expected.values)
          << c.width << " by " << c.height << ", kernel " << c.kernel;
    }
  }
}

// The weights of sigma 1 at distances 0 and 1 are 1 and exp(-1/2), divided by their sum 1 + 2 exp(-1/2).
TEST_F(Gauss, SpreadsOnePointByTheKnownWeights) {
  GaussPlane<float> plane(5, 5);
  plane.values[12] = 1000.0F;
  const GaussPlane<float> result = filtered(plane, 3, 1.0F, Against::pageAfter);
  EXPECT_NEAR(static_cast<double>(result.at(2, 2)), 204.1799, 1e-3);
  EXPECT_NEAR(static_cast<double>(result.at(1, 2)), 123.8414, 1e-3);
  EXPECT_NEAR(static_cast<double>(result.at(3, 1)), 75.1136, 1e-3);
  EXPECT_EQ(result.at(0, 2), 0.0F);
}

class GaussStatus : public testing::Test {
 protected:
  IppStatus run(int kernel, float sigma) { return run(kernel, sigma, 40, 40, {10, 10}); }

  IppStatus run(int kernel, float sigma, int sourceStep, int targetStep, IppiSize size) {
    return ippiFilterGaussBorder_32f_C1R(source_.data(), sourceStep, target_.data(), targetStep, size, kernel, sigma, 0,
                                         0.0F, buffer_.data());
  }

  void TearDown() override {
    for (const float value : target_) EXPECT_EQ(value, 7.0F) << "a refused call has written";
  }

  std::vector<float> source_ = std::vector<float>(100, 1.0F), target_ = std::vector<float>(100, 7.0F);
  std::vector<Ipp8u> buffer_ = std::vector<Ipp8u>(100000);
};

TEST_F(GaussStatus, TellsWhatIsWrong) {
  for (const int kernel : {4, 1, 0, -3, INT_MIN, INT_MAX - 1}) EXPECT_EQ(run(kernel, 1.0F), ippStsBadArgErr) << kernel;
  for (const float sigma :
       {0.0F, -1.0F, 1e-30F, std::numeric_limits<float>::infinity(), std::numeric_limits<float>::quiet_NaN()}) {
    EXPECT_EQ(run(3, sigma), ippStsBadArgErr) << sigma;
  }
  EXPECT_EQ(run(3, 1.0F, 39, 40, {10, 10}), ippStsStepErr);
  EXPECT_EQ(run(3, 1.0F, 40, 36, {10, 10}), ippStsStepErr);
  EXPECT_EQ(run(3, 1.0F, -40, 40, {10, 10}), ippStsStepErr);
  EXPECT_EQ(run(3, 1.0F, 40, 40, {0, 10}), ippStsSizeErr);
  EXPECT_EQ(run(3, 1.0F, 40, 40, {10, -1}), ippStsSizeErr);
  EXPECT_EQ(run(INT_MAX, 1.0F), ippStsSizeErr) << "the buffer would be too large";
  const float* const source = source_.data();
  float* const target = target_.data();
  EXPECT_EQ(ippiFilterGaussBorder_32f_C1R(nullptr, 40, target, 40, {10, 10}, 3, 1, 0, 0, buffer_.data()),
            ippStsNullPtrErr);
  EXPECT_EQ(ippiFilterGaussBorder_32f_C1R(source, 40, nullptr, 40, {10, 10}, 3, 1, 0, 0, buffer_.data()),
            ippStsNullPtrErr);
  EXPECT_EQ(ippiFilterGaussBorder_32f_C1R(source, 40, target, 40, {10, 10}, 3, 1, 0, 0, nullptr), ippStsNullPtrErr);
}

TEST_F(GaussStatus, OfTheBufferSize) {
  int bytes = 5;
  EXPECT_EQ(ippiFilterGaussGetBufferSize_32f_C1R({10, 10}, 4, &bytes), ippStsBadArgErr);
  EXPECT_EQ(ippiFilterGaussGetBufferSize_32f_C1R({10, 0}, 3, &bytes), ippStsSizeErr);
  EXPECT_EQ(ippiFilterGaussGetBufferSize_32f_C1R({10, 10}, INT_MAX, &bytes), ippStsSizeErr);
  EXPECT_EQ(ippiFilterGaussGetBufferSize_32f_C1R({INT_MAX, INT_MAX}, INT_MAX, &bytes), ippStsSizeErr);
  EXPECT_EQ(ippiFilterGaussGetBufferSize_32f_C1R({10, 10}, 3, nullptr), ippStsNullPtrErr);
  EXPECT_EQ(bytes, 5);
}

}  // namespace
