#include "training/cascade_stream.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <stdexcept>

#include "detect/TIppiFaceDetector.h"
#include "training/candidate_features.h"

namespace {

Cascade smallCascade() {
  const WeakClassifier two{{{3, 7, 14, 4, -1.0f}, {3, 9, 14, 2, 2.0f}}, 0.5f, 0.25f, 0.75f};
  const WeakClassifier three{{{0, 0, 4, 4, -1.0f}, {0, 0, 2, 2, 2.0f}, {2, 2, 2, 2, 2.0f}}, -0.5f, 1.0f, 0.0f};
  return {{1.25f, {two, three}}, {-2.5f, {three}}};
}

TEST(CascadeStream, ComesBackAsItWasWritten) {
  const std::vector<unsigned char> stream = cascadeToStream(smallCascade());
  EXPECT_EQ(stream.size(), 20u + 2 * 8 + 3 * 16 + 8 * 20);
  EXPECT_EQ(cascadeToStream(cascadeFromStream(stream)), stream);
}

TEST(CascadeStream, LoadsIntoTheDetector) {
  const std::vector<unsigned char> stream = cascadeToStream(smallCascade());
  const TIppiFaceDetector detector(stream.data(), static_cast<unsigned>(stream.size()));
  EXPECT_EQ(detector.StageCount, 2);
  EXPECT_EQ(detector.ClassifierCount, 3);
  EXPECT_EQ(detector.FeatureCount, 8);
  EXPECT_EQ(detector.ClassifierThreshold[1], -0.5f);
}

TEST(CascadeStream, RefusesEveryCutStream) {
  const std::vector<unsigned char> stream = cascadeToStream(smallCascade());
  for (std::size_t length = 0; length < stream.size(); ++length) {
    EXPECT_THROW(cascadeFromStream({stream.begin(), stream.begin() + static_cast<std::ptrdiff_t>(length)}),
                 std::runtime_error);
  }
}

TEST(CascadeStream, FileIsReplacedAsAWhole) {
  const std::string name = testing::TempDir() + "cascade_stream_test.bin";
  writeFile(name, {1, 2, 3, 4});
  writeFile(name, {5, 6});
  EXPECT_EQ(readFile(name), (std::vector<unsigned char>{5, 6}));
  EXPECT_FALSE(std::filesystem::exists(name + ".new"));
  std::filesystem::remove(name);
}

TEST(CandidateFeatures, LieInTheWindowAndCancelOnFlatGround) {
  const std::vector<CandidateFeature> features = allCandidateFeatures(12);
  // Counted by hand from the kinds: sum over cell sizes of (21 - width) (21 - height).
  EXPECT_EQ(features.size(), 85069u);
  for (const CandidateFeature& feature : features) {
    float flat = 0;
    for (int r = 0; r < feature.count; ++r) {
      const HaarRect& rect = feature.rects[r];
      ASSERT_GE(rect.x, 0);
      ASSERT_GE(rect.y, 0);
      ASSERT_LE(rect.x + rect.width, kWindowSide);
      ASSERT_LE(rect.y + rect.height, kWindowSide);
      flat += rect.weight * static_cast<float>(rect.width * rect.height);
    }
    ASSERT_EQ(flat, 0.0f);
  }
}

}  // namespace
