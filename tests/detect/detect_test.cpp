#include <gtest/gtest.h>

#include <cstdlib>
#include <thread>

#include "api/vizl_api.h"
#include "detect/TMultiFaceDetector.h"
#include "detect/detect_face.h"
#include "tests/detect/scene.h"

namespace {

using reference::Face;
using reference::Settings;

// Squares of several sizes, one turned by about 10 degrees, one over the edge.
void makeScene(TIppiImage& image, unsigned seed) {
  TIppiImage upright;
  fillDark(upright, 210, 160, seed);
  drawSquare(upright, 30, 30, 24);
  drawSquare(upright, 120, 40, 36);
  upright.Rotate(image, 10.0);
  drawSquare(image, 40, 105, 30);
  drawSquare(image, 190, 100, 40);
}

Face single(TIppiFaceDetector& detector, TIppiImage& image, int context) {
  Face f;
  f.confidence = -1;
  detector.DetectFace(image, nullptr, f.xc, f.yc, f.w, f.angle, f.confidence, context);
  return f;
}

std::vector<Face> multiple(TIppiFaceDetector& detector, TIppiImage& image, int bytes, int context) {
  std::vector<TFacePosition> records(64, {-1, -1, -1, 77, -1.0});
  int count = -1;
  detector.DetectMultipleFaces(image, nullptr, count, records.data(), bytes, context);
  std::vector<Face> faces;
  for (int i = 0; i < 64; i++) {
    const TFacePosition& r = records[static_cast<std::size_t>(i)];
    EXPECT_EQ(r.Reserved, 77);
    if (i < count) {
      faces.push_back({r.xc, r.yc, r.w, r.angle, -1});
    } else {
      EXPECT_EQ(r.w, -1) << "record " << i << " must stay";
    }
  }
  return faces;
}

constexpr int kRoom = 64 * static_cast<int>(sizeof(TFacePosition));

class Detection : public testing::TestWithParam<Settings> {};

TEST_P(Detection, MatchesReference) {
  const TestCascade cascade = squareCascade();
  const auto detector = makeDetector(cascade);
  const TestContext context(GetParam());
  for (unsigned seed = 1; seed <= 2; seed++) {
    TIppiImage image;
    makeScene(image, seed);
    EXPECT_EQ(single(*detector, image, context), reference::detectFace(cascade, image, GetParam()));
    const std::vector<Face> wanted = reference::detectMultipleFaces(cascade, image, GetParam(), kRoom);
    EXPECT_GE(wanted.size(), 2u);
    EXPECT_TRUE(multiple(*detector, image, kRoom, context) == wanted);
    EXPECT_TRUE(multiple(*detector, image, 47, context) == std::vector<Face>(wanted.begin(), wanted.begin() + 1));
  }
}

INSTANTIATE_TEST_SUITE_P(Settings, Detection,
                         testing::Values(Settings{true, true, 150, {2, 3}}, Settings{true, false, 150, {1, 1}},
                                         Settings{false, true, 120, {2, 3}}, Settings{false, false, 200, {4, 5}}));

// A picture without hits still hands out arrays for the caller to free.
TEST(CoarseDetection, FindsNothingInAFlatPicture) {
  const auto detector = makeDetector(squareCascade());
  TIppiImage image;
  image.AllocNew(100, 80);
  std::vector<TRectangle> faces;
  int* passes = nullptr;
  int* counts = nullptr;
  TMultiFaceDetector(detector.get()).ResultDetectFaces(image, faces, passes, counts, 0);
  const std::unique_ptr<int[]> ownedPasses(passes), ownedCounts(counts);
  EXPECT_TRUE(faces.empty());
  EXPECT_NE(passes, nullptr);
  EXPECT_NE(counts, nullptr);
}

TEST(SingleFace, NothingFoundLeavesTheConfidence) {
  const auto detector = makeDetector(squareCascade());
  TIppiImage image;
  fillDark(image, 100, 80, 4);
  Face f = {5, 5, 5, 5.0, 1234};
  detector->DetectFace(image, nullptr, f.xc, f.yc, f.w, f.angle, f.confidence, 0);
  EXPECT_EQ(f, (Face{0, 0, 0, 0.0, 1234}));
}

class FrontFunctions : public testing::Test {
 protected:
  FrontFunctions() { IppiFaceDetector = detector_.get(); }
  ~FrontFunctions() override { IppiFaceDetector = nullptr; }

  std::unique_ptr<TIppiFaceDetector> detector_ = makeDetector(squareCascade());
  TFacePosition position_ = {1, 2, 3, 4, 5.0};
  int count_ = 99;
  int confidence_ = 99;
};

TEST_F(FrontFunctions, RefuseNullAndWriteNothing) {
  TIppiImage image;
  fillDark(image, 30, 30, 1);
  EXPECT_EQ(DetectFace(nullptr, &position_, confidence_, 0), VIZLE_INVALID_ARGUMENT);
  EXPECT_EQ(DetectFace(&image, nullptr, confidence_, 0), VIZLE_INVALID_ARGUMENT);
  EXPECT_EQ(DetectMultipleFaces(nullptr, &count_, &position_, 24, 0), VIZLE_INVALID_ARGUMENT);
  EXPECT_EQ(DetectMultipleFaces(&image, nullptr, &position_, 24, 0), VIZLE_INVALID_ARGUMENT);
  EXPECT_EQ(DetectMultipleFaces(&image, &count_, nullptr, 24, 0), VIZLE_INVALID_ARGUMENT);
  EXPECT_EQ(count_, 99);
  EXPECT_EQ(confidence_, 99);
  EXPECT_EQ(position_.w, 3);
}

// A shorter side of 0 on the working image leaves no scale to run.
TEST_F(FrontFunctions, ThinPicturesHoldNoFace) {
  for (const auto& [width, height] : {std::pair{20, 10000}, {10000, 20}, {20, 65535}}) {
    TIppiImage image;
    fillDark(image, width, height, 1);
    EXPECT_EQ(DetectFace(&image, &position_, confidence_, 0), VIZLE_NO_FACE);
    EXPECT_EQ(position_.w, 0);
    EXPECT_EQ(DetectMultipleFaces(&image, &count_, &position_, 24, 0), VIZLE_NO_FACE);
    EXPECT_EQ(count_, 0);
  }
}

TEST_F(FrontFunctions, ReportAFace) {
  TIppiImage image;
  fillDark(image, 120, 90, 2);
  drawSquare(image, 40, 30, 40);
  EXPECT_EQ(DetectFace(&image, &position_, confidence_, 0), VIZLE_OK);
  EXPECT_EQ(position_.Reserved, 4);
  EXPECT_EQ(DetectMultipleFaces(&image, &count_, &position_, 24, 0), VIZLE_OK);
  EXPECT_EQ(count_, 1);
  EXPECT_EQ(DetectMultipleFaces(&image, &count_, &position_, 23, 0), VIZLE_NO_FACE);
}

}  // namespace
