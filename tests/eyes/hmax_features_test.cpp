#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

#include "eyes/TEyeHMaxFeatures.h"
#include "primitives/ippi.h"
#include "tests/eyes/window_pictures.h"

namespace {

constexpr int kSide = 32;
constexpr double kLambda[4] = {3.5f, 4.6f, 5.6f, 6.8f};  // as the library's floats
using Map = TEyeHMaxFeatures::TMap;

std::size_t wrapped(int x, int y) {
  return static_cast<std::size_t>((x + kSide) % kSide + kSide * ((y + kSide) % kSide));
}

// Calls work(dx, dy) for the whole-pixel offsets inside a disc.
template <class Work>
void forDisc(double radius, Work work) {
  for (int dy = -15; dy <= 15; ++dy) {
    for (int dx = -15; dx <= 15; ++dx) {
      if (dx * dx + dy * dy <= radius * radius) work(dx, dy);
    }
  }
}

// Sum of squared deviations from the mean over the disc, of pixels in units of 256.
double directEnergy(const std::vector<unsigned char>& window, int x, int y, double radius) {
  std::vector<double> values;
  forDisc(radius, [&](int dx, int dy) { values.push_back(window[wrapped(x + dx, y + dy)] / 256.0); });
  double mean = 0, energy = 0;
  for (const double v : values) mean += v / static_cast<double>(values.size());
  for (const double v : values) energy += (v - mean) * (v - mean);
  return energy;
}

// The grating under the disc, its mean taken out, divided by its energy, laid over the window at (x, y).
double directResponse(const std::vector<unsigned char>& window, int x, int y, double angle, double lambda) {
  std::vector<double> kernel, pixels;
  forDisc(lambda, [&](int dx, int dy) {
    kernel.push_back(std::cos(6.2831854820251465 / lambda * (dx * std::cos(angle) + dy * std::sin(angle))));
    pixels.push_back(window[wrapped(x + dx, y + dy)] / 256.0);
  });
  double mean = 0, energy = 0, product = 0;
  for (const double k : kernel) mean += k / static_cast<double>(kernel.size());
  for (double& k : kernel) energy += (k -= mean, k * k);
  for (std::size_t i = 0; i < kernel.size(); ++i) product += kernel[i] * pixels[i] / energy;
  return std::abs(product);
}

TEST(HMaxFeatures, S1IsTheDirectFilterDividedByTheContrast) {
  std::mt19937 random(11);
  for (int round = 0; round < 3; ++round) {
    const std::vector<unsigned char> window = texturedWindow(random);
    TEyeHMaxFeatures features(testPrototype());
    features.SetPic(window.data(), kSide, kSide);
    features.ApplyS1Filters();
    for (int i = 0; i < 200; ++i) {
      const int x = static_cast<int>(random() % kSide), y = static_cast<int>(random() % kSide);
      const int s = i % 4, k = static_cast<int>(random() % 8);
      const double energy = directEnergy(window, x, y, kLambda[s]);
      const double response = directResponse(window, x, y, k * 3.1415927 / 8, kLambda[s]);
      EXPECT_NEAR(features.localEnergy(s)[wrapped(x, y)], energy, 2e-5 * (1 + energy));
      EXPECT_NEAR(features.s1Response(k, s)[wrapped(x, y)], response / energy, 1e-4 * (1 + response / energy));
    }
  }
}

// Largest of both scales from four pixels before to three after, 0 beyond the window.
float directPool(const TEyeHMaxFeatures& s1, int orientation, int band, int x, int y) {
  float largest = 0;
  for (int py = std::max(y - 4, 0); py <= std::min(y + 3, kSide - 1); ++py) {
    for (int px = std::max(x - 4, 0); px <= std::min(x + 3, kSide - 1); ++px) {
      largest = std::max({largest, s1.s1Response(orientation, 2 * band)[wrapped(px, py)],
                          s1.s1Response(orientation, 2 * band + 1)[wrapped(px, py)]});
    }
  }
  return largest;
}

float raisedShare(float value, float sum) {
  const auto raised = static_cast<float>(std::pow(static_cast<double>(value / sum), 0.30000001192092896));
  return raised <= 1.0f ? raised : 1.0f;
}

TEST(HMaxFeatures, C1PoolsAndComparesBetweenOrientations) {
  std::mt19937 random(12);
  std::vector<unsigned char> window = texturedWindow(random);
  // Little contrast on the left: responses there are large enough to survive the cut of their fraction.
  for (std::size_t i = 0; i < window.size(); ++i) {
    if (i % kSide < 16) window[i] = static_cast<unsigned char>(120 + window[i] / 64);
  }
  TEyeHMaxFeatures before(testPrototype()), after(testPrototype());
  for (TEyeHMaxFeatures* features : {&before, &after}) {
    features->SetPic(window.data(), kSide, kSide);
    features->ApplyS1Filters();
  }
  after.ComputeC1Features();
  int large = 0;
  for (int b = 0; b < 2; ++b) {
    for (int y = 0; y < kSide; ++y) {
      for (int x = 0; x < kSide; ++x) {
        float pooled[8], sum = 0;
        for (int o = 0; o < 8; ++o) sum += pooled[o] = directPool(before, o, b, x, y);
        for (int o = 0; o < 8; ++o) {
          const auto whole = static_cast<float>(static_cast<int>(before.s1Response(o, 2 * b)[wrapped(x, y)]));
          large += whole > 0;
          ASSERT_EQ(after.c1Feature(o, b)[wrapped(x, y)], raisedShare(pooled[o], sum)) << x << ", " << y;
          ASSERT_EQ(after.s1Response(o, 2 * b)[wrapped(x, y)], raisedShare(whole, sum)) << x << ", " << y;
        }
      }
    }
  }
  EXPECT_GT(large, 50);
}

TEST(HMaxFeatures, FlatWindowsStayInRange) {
  for (const int value : {0, 1, 100, 255}) {
    const std::vector<unsigned char> window(kSide * kSide, static_cast<unsigned char>(value));
    TEyeHMaxFeatures features(testPrototype());
    features.SetPic(window.data(), kSide, kSide);
    features.ApplyS1Filters();
    for (int s = 0; s < 4; ++s) {
      for (const float energy : features.localEnergy(s)) EXPECT_NEAR(energy, 0, 2e-3);
    }
    features.ComputeC1Features();
    for (int o = 0; o < 8; ++o) {
      for (int b = 0; b < 2; ++b) {
        for (std::size_t i = 0; i < kSide * kSide; ++i) {
          const float s1 = features.s1Response(o, 2 * b)[i], c1 = features.c1Feature(o, b)[i];
          ASSERT_TRUE(s1 >= 0 && s1 <= 1 && c1 >= 0 && c1 <= 1) << value;
          // Nothing at all is the share 0 / 0.
          ASSERT_TRUE(value != 0 || (s1 == 1 && c1 == 1));
        }
      }
    }
  }
}

TEST(HMaxFeatures, ACopyGivesWhatThePrototypeGives) {
  std::mt19937 random(13);
  const std::vector<unsigned char> window = texturedWindow(random), other = texturedWindow(random);
  TEyeHMaxFeatures prototype;
  prototype.CreateS1Filters();
  TEyeHMaxFeatures copy(prototype);
  EXPECT_FALSE(copy.hasC1Features());
  // The second window of the copy must not depend on its first.
  copy.SetPic(other.data(), kSide, kSide);
  copy.ApplyS1Filters();
  copy.ComputeC1Features();
  copy.FreeC1Features();
  EXPECT_FALSE(copy.hasC1Features());
  for (TEyeHMaxFeatures* features : {&prototype, &copy}) {
    features->SetPic(window.data(), kSide, kSide);
    features->ApplyS1Filters();
    features->ComputeC1Features();
  }
  for (int o = 0; o < 8; ++o) {
    for (int b = 0; b < 2; ++b) {
      EXPECT_EQ(copy.s1Response(o, 2 * b), prototype.s1Response(o, 2 * b));
      EXPECT_EQ(copy.c1Feature(o, b), prototype.c1Feature(o, b));
    }
  }
  const std::vector<float> values = copy.GetC1Features(7, 30);
  ASSERT_EQ(values.size(), 64u);
  EXPECT_EQ(values[5 * 8 + 1], copy.c1Feature(5, 1)[7 + 32 * 30]);
  EXPECT_EQ(values[5 * 8 + 2], 0);
}

TEST(HMaxFeatures, ASmallerPictureIsPaddedWithBlackAndALargerOneCut) {
  std::mt19937 random(14);
  std::vector<unsigned char> large(40 * 40), cut(kSide * kSide), padded(kSide * kSide);
  for (unsigned char& pixel : large) pixel = static_cast<unsigned char>(random());
  for (std::size_t y = 0; y < kSide; ++y) std::copy_n(&large[y * 40], kSide, &cut[y * kSide]);
  for (std::size_t y = 0; y < 5; ++y) std::copy_n(&large[y * 9], 9, &padded[y * kSide]);
  const auto energy = [](const std::vector<unsigned char>& bytes, int width, int height) {
    TEyeHMaxFeatures features(testPrototype());
    features.SetPic(bytes.data(), width, height);
    features.ApplyS1Filters();
    return features.localEnergy(2);
  };
  EXPECT_EQ(energy(large, 40, 40), energy(cut, kSide, kSide));
  EXPECT_EQ(energy(large, 9, 5), energy(padded, kSide, kSide));
}

}  // namespace
