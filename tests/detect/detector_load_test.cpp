#include <gtest/gtest.h>

#include <limits>
#include <stdexcept>

#include "tests/detect/scene.h"

namespace {

TestCascade smallCascade() {
  TestCascade cascade;
  cascade.stages.push_back({{{3, 7, 14, 4}, {3, 9, 14, 2}, {1, 2, 18, 4}, {7, 2, 6, 4}},
                            {-1.0f, 2.0f, -1.0f, 3.0f},
                            {0.0040142f, 0.0151513f},
                            {0.0337942f, 0.1514132f},
                            {0.8378107f, 0.7488812f},
                            {2, 2}});
  cascade.stages.push_back({{{0, 0, 20, 20}}, {2.0f}, {0.5f}, {1.0f}, {0.0f}, {1}});
  cascade.thresholds = {0.82268941f, -1.5f};
  return cascade;
}

void expectRefused(const std::vector<unsigned char>& stream) {
  EXPECT_THROW(TIppiFaceDetector(stream.data(), static_cast<unsigned>(stream.size())), std::invalid_argument);
}

TEST(DetectorLoad, RefusesEveryCutAndAnExcess) {
  std::vector<unsigned char> stream = smallCascade().Stream();
  for (std::size_t size = 0; size < stream.size(); size++) {
    expectRefused(std::vector<unsigned char>(stream.begin(), stream.begin() + static_cast<std::ptrdiff_t>(size)));
  }
  stream.push_back(0);
  expectRefused(stream);
}

// Every integer of the stream in turn becomes hostile: window, counts, rectangles.
TEST(DetectorLoad, RefusesHostileIntegers) {
  const std::vector<unsigned char> good = smallCascade().Stream();
  constexpr int kMax = std::numeric_limits<int>::max();
  constexpr int kMin = std::numeric_limits<int>::min();
  // Word 6 and the four after each weight are floats.
  const std::vector<int> integers = {0, 1, 2, 3, 4, 5, 7, 8, 9, 10, 11, 13, 14, 15, 16};
  for (const int i : integers) {
    for (const int value : {kMax, kMin, -1, 5002, 1 << 30}) {
      std::vector<unsigned char> stream = good;
      std::memcpy(stream.data() + 4 * i, &value, 4);
      expectRefused(stream);
    }
  }
}

TEST(DetectorLoad, RefusesRectanglesOutsideTheWindow) {
  for (const IppiRect& bad : {IppiRect{20, 0, 1, 1}, {0, 20, 1, 1}, {1, 0, 20, 1}, {0, 1, 1, 20}, {0, 0, 0, 5}}) {
    TestCascade cascade = smallCascade();
    cascade.stages[0].rects[1] = bad;
    expectRefused(cascade.Stream());
  }
}

TEST(DetectorLoad, KeepsToTheCapacities) {
  const auto withClassifiers = [](int classifiers, int features) {
    TestCascade cascade;
    StageData stage;
    for (int c = 0; c < classifiers; c++) {
      stage.num.push_back(features);
      stage.thresholds.push_back(0.0f);
      stage.val1.push_back(0.0f);
      stage.val2.push_back(1.0f);
      stage.rects.insert(stage.rects.end(), static_cast<std::size_t>(features), {0, 0, 5, 5});
      stage.weights.insert(stage.weights.end(), static_cast<std::size_t>(features), 1.0f);
    }
    cascade.stages.push_back(stage);
    cascade.thresholds.push_back(0.0f);
    return cascade.Stream();
  };
  const std::vector<unsigned char> full = withClassifiers(2301, 2);
  EXPECT_EQ(TIppiFaceDetector(full.data(), static_cast<unsigned>(full.size())).ClassifierCount, 2301);
  expectRefused(withClassifiers(2302, 2));
  expectRefused(withClassifiers(2, 2501));
  TestCascade stages = smallCascade();
  while (stages.stages.size() < 32) {
    stages.stages.push_back(stages.stages[1]);
    stages.thresholds.push_back(0.0f);
  }
  expectRefused(stages.Stream());
  stages.stages.pop_back();
  EXPECT_EQ(makeDetector(stages)->StageCount, 31);
}

}  // namespace
