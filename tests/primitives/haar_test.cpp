#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <memory>

#include "primitives/haar_cascade.h"
#include "tests/primitives/haar_reference.h"

namespace {

constexpr int kWindow = 20;

struct FreeState {
  void operator()(IppiHaarClassifier_32f* state) const { ippiHaarClassifierFree_32f(state); }
};
using State = std::unique_ptr<IppiHaarClassifier_32f, FreeState>;

State build(const StageData& stage) {
  IppiHaarClassifier_32f* state = nullptr;
  EXPECT_EQ(buildState(stage, &state), ippStsNoErr);
  return State(state);
}

// A picture with its integrals, and a deviation map in which zeros occur.
struct Scene {
  Plane<Ipp8u> picture;
  Plane<float> sum;
  Plane<double> sqr;
  Plane<float> norm;

  Scene(int positionsX, int positionsY, std::mt19937& random)
      : picture(randomPicture(positionsX + kWindow - 1, positionsY + kWindow - 1, random)),
        sum(picture.width + 1, picture.height + 1, static_cast<int>(random() % 4), 0.0f),
        sqr(picture.width + 1, picture.height + 1, 0, 0.0),
        norm(positionsX, positionsY, static_cast<int>(random() % 4), -1.0f) {
    referenceIntegrals(picture, -16777216.0f, 0.0, sum, sqr);
    for (int y = 0; y < positionsY; y++) {
      for (int x = 0; x < positionsX; x++) {
        norm.at(x, y) = random() % 16 == 0 ? 0.0f : referenceDeviation(sum, sqr, x, y, {1, 1, 18, 18});
      }
    }
  }
};

// A threshold that about `share` of the positions reach, itself the exact sum of one of them.
float thresholdFor(const StageData& stage, const Scene& scene, double share) {
  std::vector<float> sums;
  for (int y = 0; y < scene.norm.height; y++) {
    for (int x = 0; x < scene.norm.width; x++) {
      sums.push_back(referenceStageSum(stage, scene.sum, scene.norm.at(x, y), x, y));
    }
  }
  std::sort(sums.begin(), sums.end());
  return sums[static_cast<std::size_t>(static_cast<double>(sums.size() - 1) * (1 - share))];
}

int referenceApply(const StageData& stage, const Scene& scene, float threshold, Plane<Ipp8u>& mask) {
  int survivors = 0;
  for (int y = 0; y < scene.norm.height; y++) {
    for (int x = 0; x < scene.norm.width; x++) {
      if (mask.at(x, y) == 0) continue;
      if (threshold > referenceStageSum(stage, scene.sum, scene.norm.at(x, y), x, y)) {
        mask.at(x, y) = 0;
      } else {
        survivors++;
      }
    }
  }
  return survivors;
}

Plane<Ipp8u> randomMask(int width, int height, unsigned sparseness, std::mt19937& random) {
  Plane<Ipp8u> mask(width, height, 3, 99);
  for (int y = 0; y < height; y++) {
    for (int x = 0; x < width; x++) {
      mask.at(x, y) = random() % sparseness == 0 ? static_cast<Ipp8u>(1 + random() % 255) : static_cast<Ipp8u>(0);
    }
  }
  return mask;
}

TEST(HaarStage, MatchesReferenceForEveryWidthAndMaskDensity) {
  std::mt19937 random(3);
  for (int width = 1; width <= 45; width++) {
    Scene scene(width, 1 + width % 6, random);
    const StageData stage = randomStage(1 + width % 9, kWindow, kWindow, random);
    const State state = build(stage);
    for (const unsigned sparseness : {1u, 2u, 9u, 60u}) {
      const float threshold = thresholdFor(stage, scene, 0.5);
      Plane<Ipp8u> mask = randomMask(width, scene.norm.height, sparseness, random), wanted = mask;
      const int wantedCount = referenceApply(stage, scene, threshold, wanted);
      int count = -1;
      ASSERT_EQ(ippiApplyHaarClassifier_32f_C1R(scene.sum.ptr(), scene.sum.step(), scene.norm.ptr(), scene.norm.step(),
                                                mask.ptr(), mask.step(), {width, scene.norm.height}, &count, threshold,
                                                state.get()),
                ippStsNoErr);
      EXPECT_EQ(count, wantedCount) << width;
      EXPECT_TRUE(sameBits(mask, wanted)) << width;
    }
  }
}

// The integral ends with the last window: a read past it would be seen by the address sanitizer.
TEST(HaarStage, ReadsNothingPastTheLastWindow) {
  std::mt19937 random(4);
  for (const int width : {3, 8, 11, 16}) {
    Scene scene(width, 2, random);
    const StageData stage = randomStage(4, kWindow, kWindow, random);
    std::vector<float> tight(scene.sum.data.begin(), scene.sum.data.end() - (scene.sum.pitch - scene.sum.width));
    std::vector<float> tightNorm(scene.norm.data.begin(),
                                 scene.norm.data.end() - (scene.norm.pitch - scene.norm.width));
    Plane<Ipp8u> mask(width, 2, 0, 255), wanted = mask;
    int count = -1;
    ippiApplyHaarClassifier_32f_C1R(tight.data(), scene.sum.step(), tightNorm.data(), scene.norm.step(), mask.ptr(),
                                    mask.step(), {width, 2}, &count, 1.5f, build(stage).get());
    EXPECT_EQ(count, referenceApply(stage, scene, 1.5f, wanted));
    EXPECT_TRUE(sameBits(mask, wanted));
  }
}

// One classifier over the left half minus the right, on a flat picture: the value is 0, so neither a
// deviation of 0 nor a threshold of 0 is above it, and only a negative value takes the first leaf.
TEST(HaarStage, EqualityTakesTheSecondValueAndSurvives) {
  Plane<float> sum(21, 21, 0, 0.0f);
  Plane<double> sqr(21, 21, 0, 0.0);
  const Plane<Ipp8u> flat(20, 20, 0, 200);
  referenceIntegrals(flat, 0.0f, 0.0, sum, sqr);
  const auto survives = [&sum](float norm, float classifierThreshold, float rightWeight, float stageThreshold) {
    const StageData stage = {
        {{0, 0, 10, 20}, {10, 0, 10, 20}}, {-1.0f, rightWeight}, {classifierThreshold}, {0.25f}, {0.75f}, {2}};
    Ipp8u mask = 7;
    int count = -1;
    ippiApplyHaarClassifier_32f_C1R(sum.ptr(), sum.step(), &norm, 4, &mask, 1, {1, 1}, &count, stageThreshold,
                                    build(stage).get());
    EXPECT_EQ(mask, count == 1 ? 7 : 0);
    return count == 1;
  };
  EXPECT_TRUE(survives(0.0f, 1.0f, 1.0f, 0.75f));
  EXPECT_TRUE(survives(5.0f, 0.0f, 1.0f, 0.75f));
  EXPECT_FALSE(survives(5.0f, 0.0f, 1.0f, std::nextafter(0.75f, 1.0f)));
  EXPECT_FALSE(survives(0.0f, 1.0f, 0.5f, 0.75f));
  EXPECT_TRUE(survives(0.0f, 1.0f, 0.5f, 0.25f));
}

TEST(HaarStage, SizeIsTheFarthestReachOfAnyFeature) {
  const StageData stage = {{{12, 0, 8, 3}, {0, 13, 5, 7}}, {-1.0f, 1.0f}, {0.0f}, {0.0f}, {0.0f}, {2}};
  IppiSize size = {-1, -1};
  EXPECT_EQ(ippiGetHaarClassifierSize_32f(build(stage).get(), &size), ippStsNoErr);
  EXPECT_EQ(size.width, 20);
  EXPECT_EQ(size.height, 20);
  StageData empty = stage;
  IppiHaarClassifier_32f* state = nullptr;
  EXPECT_EQ(ippiHaarClassifierInitAlloc_32f(&state, empty.rects.data(), empty.weights.data(), empty.thresholds.data(),
                                            empty.val1.data(), empty.val2.data(), empty.num.data(), 0),
            ippStsNoErr);
  const State owned(state);
  ippiGetHaarClassifierSize_32f(state, &size);
  EXPECT_EQ(size.width, 0);
  EXPECT_EQ(size.height, 0);
}

TEST(HaarStage, InitRefusesInOrder) {
  const StageData good = {{{0, 0, 5, 5}, {1, 1, 2, 2}}, {-1.0f, 2.0f}, {0.0f}, {0.0f}, {1.0f}, {2}};
  IppiHaarClassifier_32f* state = nullptr;
  const auto refusal = [&](const StageData& s, int length) {
    return ippiHaarClassifierInitAlloc_32f(&state, s.rects.data(), s.weights.data(), s.thresholds.data(), s.val1.data(),
                                           s.val2.data(), s.num.data(), length);
  };
  StageData bad = good;
  bad.rects[1] = {0, 0, 0, 5};
  EXPECT_EQ(refusal(bad, 1), ippStsBadArgErr);
  bad.rects[1] = {-1, 0, 5, 5};
  EXPECT_EQ(refusal(bad, 1), ippStsBadArgErr);
  bad.rects[1] = {std::numeric_limits<int>::max(), 0, 5, 5};
  EXPECT_EQ(refusal(bad, 1), ippStsBadArgErr);
  EXPECT_EQ(refusal(bad, -1), ippStsSizeErr);
  bad.num[0] = 0;
  EXPECT_EQ(refusal(bad, 1), ippStsSizeErr);
  EXPECT_EQ(ippiHaarClassifierInitAlloc_32f(&state, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, -1),
            ippStsNullPtrErr);
  EXPECT_EQ(state, nullptr);
  EXPECT_EQ(ippiHaarClassifierFree_32f(nullptr), ippStsNullPtrErr);
  EXPECT_EQ(ippiGetHaarClassifierSize_32f(nullptr, nullptr), ippStsNullPtrErr);
}

TEST(HaarStage, ApplyRefusesInOrderAndChangesNothing) {
  std::mt19937 random(5);
  Scene scene(4, 4, random);
  const State state = build(randomStage(2, kWindow, kWindow, random));
  Plane<Ipp8u> mask(4, 4, 0, 7);
  int count = 1234;
  const auto run = [&](float* sum, int sumStep, int normStep, int maskStep, IppiSize roi) {
    return ippiApplyHaarClassifier_32f_C1R(sum, sumStep, scene.norm.ptr(), normStep, mask.ptr(), maskStep, roi, &count,
                                           1e9f, state.get());
  };
  float* sum = scene.sum.ptr();
  EXPECT_EQ(run(nullptr, 1, 1, 1, {0, 0}), ippStsNullPtrErr);
  EXPECT_EQ(run(sum, 1, 1, 1, {4, 0}), ippStsSizeErr);
  EXPECT_EQ(run(sum, 15, 16, 4, {4, 4}), ippStsStepErr);
  EXPECT_EQ(run(sum, 16, 15, 4, {4, 4}), ippStsStepErr);
  EXPECT_EQ(run(sum, 17, 16, 3, {4, 4}), ippStsStepErr);
  EXPECT_EQ(run(sum, 101, 16, 4, {4, 4}), ippStsNotEvenStepErr);
  EXPECT_EQ(run(sum, 100, 18, 4, {4, 4}), ippStsNotEvenStepErr);
  EXPECT_EQ(count, 1234);
  EXPECT_EQ(mask.data, std::vector<Ipp8u>(16, 7));
}

// The fused scan leaves what the stages leave in a mask one after the other.
TEST(HaarCascade, KeepsWhatTheStagesKeepOneByOne) {
  std::mt19937 random(6);
  for (int round = 0; round < 60; round++) {
    const int width = 1 + static_cast<int>(random() % 60);
    const int height = 1 + static_cast<int>(random() % 50);
    Scene scene(width, height, random);
    const int pitch = scene.sum.pitch;
    std::vector<State> states;
    std::vector<const IppiHaarClassifier_32f*> pointers;
    std::vector<float> thresholds;
    Plane<Ipp8u> mask(width, height, 0, 255);
    for (int s = 0; s < 5; s++) {
      const StageData stage = randomStage(1 + s, kWindow, kWindow, random);
      states.push_back(build(stage));
      pointers.push_back(states.back().get());
      thresholds.push_back(thresholdFor(stage, scene, 0.65));
      referenceApply(stage, scene, thresholds.back(), mask);
    }
    Plane<float> norm(pitch, height, 0, 0.0f);
    for (int y = 0; y < height; y++) std::copy_n(&scene.norm.at(0, y), width, &norm.at(0, y));
    scene.sum.data.resize(scene.sum.data.size() + HaarCascade::kSlack);
    norm.data.resize(norm.data.size() + HaarCascade::kSlack);
    HaarCascade cascade(pointers.data(), thresholds.data(), static_cast<int>(pointers.size()));
    cascade.SetPitch(pitch + 1);
    cascade.SetPitch(pitch);
    std::vector<HaarCascade::Position> survivors;
    cascade.Scan(scene.sum.ptr(), norm.ptr(), {width, height}, 0, survivors);
    Plane<Ipp8u> found(width, height, 0, 0);
    for (const auto& p : survivors) found.at(p.x, p.y) = 255;
    EXPECT_TRUE(sameBits(found, mask)) << "round " << round;
    EXPECT_TRUE(std::is_sorted(survivors.begin(), survivors.end(),
                               [](auto& a, auto& b) { return a.y != b.y ? a.y < b.y : a.x < b.x; }));
  }
}

}  // namespace
