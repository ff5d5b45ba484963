#include <gtest/gtest.h>

#include <algorithm>

#include "tests/detect/scene.h"

namespace {

std::size_t expectReferenceScan(const TestCascade& cascade, TIppiImage& image, float scale) {
  std::vector<TRectangle> found = {{1, 2, 3, 4}};
  makeDetector(cascade)->DetectFaceRaw(image, found, scale);
  const std::vector<TRectangle> wanted = reference::detectFaceRaw(cascade, image, scale);
  EXPECT_EQ(found.size(), wanted.size()) << image.Width << " by " << image.Height << " from " << scale;
  EXPECT_TRUE(found == wanted) << image.Width << " by " << image.Height << " from " << scale;
  return wanted.size();
}

TEST(Scan, MatchesReferenceOnRandomPicturesAndCascades) {
  std::mt19937 random(11);
  std::size_t hits = 0;
  for (int round = 0; round < 40; round++) {
    const TestCascade cascade = randomCascade(20, 20, 1 + round % 4, random);
    TIppiImage image;
    fillBlobs(image, 14 + static_cast<int>(random() % 110), 14 + static_cast<int>(random() % 90),
              static_cast<unsigned>(random()));
    hits += expectReferenceScan(cascade, image, round % 3 == 0 ? 0.7f : 1.0f);
  }
  EXPECT_GT(hits, 1000u);
}

TEST(Scan, MatchesReferenceForOtherWindows) {
  std::mt19937 random(12);
  for (const auto& [width, height] : {std::pair{3, 3}, {4, 9}, {12, 24}, {31, 17}}) {
    const TestCascade cascade = randomCascade(width, height, 2, random);
    TIppiImage image;
    fillBlobs(image, 70, 66, 5);
    expectReferenceScan(cascade, image, 1.0f);
  }
}

// Integrals of doubles pass 4096 bytes a row at 511 columns.
TEST(Scan, MatchesReferenceOnWidePictures) {
  std::mt19937 random(13);
  const TestCascade cascade = randomCascade(20, 20, 1, random);
  for (const int width : {511, 512, 513, 900}) {
    TIppiImage image;
    fillBlobs(image, width, 34, static_cast<unsigned>(width));
    EXPECT_GT(expectReferenceScan(cascade, image, 1.0f), 0u);
  }
}

TEST(Scan, SmallestPictureIsScannedBeyondItsEdges) {
  TestCascade everything = squareCascade();
  everything.thresholds[0] = -1.0f;
  TIppiImage image;
  fillDark(image, 20, 20, 1);
  std::vector<TRectangle> rects;
  makeDetector(everything)->DetectFaceRaw(image, rects, 1.0f);
  // Scale 1: 19 by 19 with 7 on each side is 33 by 33, 14 positions a side; the first lies at the lower left.
  ASSERT_GE(rects.size(), 14u * 14u);
  EXPECT_EQ(rects[0], (TRectangle{-7, 7, 13, 27}));
  EXPECT_EQ(rects[1], (TRectangle{-7, 6, 13, 26}));
  EXPECT_EQ(rects[14], (TRectangle{-6, 7, 14, 27}));
  EXPECT_EQ(rects.size(), reference::detectFaceRaw(everything, image, 1.0f).size());
}

TEST(Scan, OfTooSmallOrEmptyPicturesIsEmpty) {
  const auto detector = makeDetector(squareCascade());
  std::vector<TRectangle> rects = {{1, 2, 3, 4}};
  TIppiImage empty;
  detector->DetectFaceRaw(empty, rects, 1.0f);
  EXPECT_TRUE(rects.empty());
  for (const auto& [width, height] : {std::pair{14, 100}, {100, 14}, {1, 1}}) {
    TIppiImage image;
    fillDark(image, width, height, 1);
    rects.assign(1, {1, 2, 3, 4});
    detector->DetectFaceRaw(image, rects, 1.0f);
    EXPECT_TRUE(rects.empty()) << width << " by " << height;
  }
}

// Too flat to be padded and too low for a window: the scale gives nothing, the padded ones after it do.
TEST(Scan, SkipsScalesThatNoWindowFits) {
  TestCascade everything = squareCascade();
  everything.thresholds[0] = -1.0f;
  for (const auto& [width, height] : {std::pair{60, 16}, {300, 15}, {20, 400}}) {
    TIppiImage image;
    fillDark(image, width, height, 2);
    expectReferenceScan(everything, image, 1.0f);
  }
}

// Features that end before the window does must not let the deviation's rectangle leave the picture.
TEST(Scan, KeepsTheWholeWindowInsideForNarrowCascades) {
  TestCascade narrow;
  narrow.stages.push_back({{{0, 16, 3, 4}, {1, 17, 2, 2}}, {-1.0f, 2.0f}, {0.0f}, {0.5f}, {1.0f}, {2}});
  narrow.thresholds.push_back(0.1f);
  TIppiImage image;
  fillBlobs(image, 90, 70, 3);
  std::vector<TRectangle> rects;
  makeDetector(narrow)->DetectFaceRaw(image, rects, 1.0f);
  EXPECT_FALSE(rects.empty());
}

}  // namespace
