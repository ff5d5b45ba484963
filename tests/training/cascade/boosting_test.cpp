#include "training/boosting.h"

#include <gtest/gtest.h>

#include <random>

#include "training/scan_windows.h"

namespace {

// Noise; the faces have a dark band above a bright one, with some exceptions.
std::vector<Window> bandedWindows(std::size_t faces, std::size_t others, std::uint32_t seed) {
  std::mt19937 random(seed);
  std::vector<Window> windows(faces + others);
  for (std::size_t k = 0; k < windows.size(); ++k) {
    for (auto& pixel : windows[k]) pixel = static_cast<unsigned char>(60 + random() % 120);
    if (k >= faces || random() % 50 == 0) continue;
    for (int y = 7; y < 9; ++y) {
      for (int x = 3; x < 17; ++x) windows[k][static_cast<std::size_t>(y * kWindowSide + x)] /= 2;
    }
  }
  return windows;
}

double passing(const Stage& stage, const std::vector<Window>& windows, std::size_t first, std::size_t last) {
  const std::vector<unsigned char> stream = cascadeToStream({stage});
  const TIppiFaceDetector detector(stream.data(), static_cast<unsigned>(stream.size()));
  WindowScanner scanner(detector);
  int passed = 0;
  for (std::size_t k = first; k < last; ++k) passed += scanner.passes(windows[k], 0) ? 1 : 0;
  return passed / static_cast<double>(last - first);
}

class Boosting : public testing::Test {
 protected:
  static constexpr std::size_t kFaces = 600;
  static constexpr std::size_t kOthers = 800;

  static void SetUpTestSuite() {
    features = new std::vector<CandidateFeature>(allCandidateFeatures(40));
    windows = new std::vector<Window>(bandedWindows(kFaces, kOthers, 11));
    table = new FeatureTable(*features);
    table->fill(*windows, 2);
  }
  static void TearDownTestSuite() {
    delete table;
    delete windows;
    delete features;
  }

  inline static std::vector<CandidateFeature>* features = nullptr;
  inline static std::vector<Window>* windows = nullptr;
  inline static FeatureTable* table = nullptr;
};

TEST_F(Boosting, StageKeepsItsShareOfFacesInTheLibrarysOwnArithmetic) {
  const StagePlan plan{12, 3, 5.5f, 0.97};
  const Stage stage = Booster(*features, *table, kFaces, 3000, 5, 2).train(plan);
  ASSERT_EQ(stage.classifiers.size(), 12u);
  EXPECT_EQ(stage.threshold, 5.5f);
  int three = 0;
  for (const WeakClassifier& weak : stage.classifiers) three += weak.rects.size() == 3 ? 1 : 0;
  EXPECT_EQ(three, 3);
  EXPECT_GE(passing(stage, *windows, 0, kFaces), 0.97);
  EXPECT_LT(passing(stage, *windows, kFaces, windows->size()), 0.25);
}

}  // namespace
