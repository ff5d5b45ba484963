#include "eyes/detect_eyes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <random>
#include <vector>

#include "api/vizl_api.h"
#include "eyes/find_eye.h"
#include "features/crop_face_adjust_features.h"
#include "image/TIppiImage.h"
#include "tests/eyes/window_pictures.h"

namespace {

// Results follow the weights, so each test takes its own: nothing here depends on the trained ones.
class DetectEyes : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(VIZL_Initialize(nullptr), VIZLE_OK);
    UseEyeModel(*randomModel(random_));
  }
  void TearDown() override { VIZL_Finalize(); }

  std::mt19937 random_{31};
};

std::vector<unsigned char> bytesOf(const TIppiImage& image) { return {image.Pixels, image.Pixels + image.SizeBytes}; }

void mirror(TIppiImage& image) {
  for (int y = 0; y < image.Height; ++y) {
    unsigned char* row = image.Pixels + y * image.Step;
    std::reverse(row, row + image.Width);
  }
}

TEST_F(DetectEyes, TheSecondEyeIsTheFirstOfTheMirrorImage) {
  for (int round = 0; round < 5; ++round) {
    TIppiImage frame;
    fillTextured(frame, 128, 128, random_);
    const std::vector<unsigned char> before = bytesOf(frame);
    int x = -1, y = -1, mirroredX = -1, mirroredY = -1;
    EXPECT_EQ(FindRightEye(&frame, &mirroredX, &mirroredY, true), 0);
    EXPECT_EQ(bytesOf(frame), before);
    mirror(frame);
    EXPECT_EQ(FindRightEye(&frame, &x, &y, false), 0);
    EXPECT_EQ(mirroredX, x);
    EXPECT_EQ(mirroredY, y);
    EXPECT_TRUE(x >= 26 && x <= 51 && y >= 16 && y <= 47) << x << ", " << y;
  }
}

TEST_F(DetectEyes, ResultsAreThoseOfTheFramePutBackInPlace) {
  TIppiImage image;
  fillTextured(image, 300, 260, random_);
  for (const int w : {37, 80, 116, 231}) {
    const TFacePosition face = {150, 120, w, 0, 25.0};
    TPoint points[2] = {};
    ASSERT_EQ(DetectEyesInRegion(&image, &face, points), VIZLE_OK);

    TIppiImage frame(imGray8);
    frame.CopyFrom(image);
    float scale;
    int left, top, ax, ay, bx, by;
    ASSERT_EQ(CropFaceAdjustFeatures(&frame, face, 128, nullptr, 0, &scale, &left, &top), VIZLE_OK);
    FindRightEye(&frame, &ax, &ay, false);
    FindRightEye(&frame, &bx, &by, true);
    const auto cut = [=](int place, int origin) {
      return static_cast<int>(static_cast<float>(place) / scale + static_cast<float>(origin));
    };
    EXPECT_EQ(points[0].x, cut(ax, left));
    EXPECT_EQ(points[0].y, cut(ay, top));
    EXPECT_EQ(points[1].x, cut(127 - bx, left));
    EXPECT_EQ(points[1].y, cut(by, top));
  }
}

TEST_F(DetectEyes, ResultsLieInsideThePictureWhereverTheFaceIs) {
  TIppiImage image;
  fillTextured(image, 90, 70, random_);
  const std::vector<unsigned char> before = bytesOf(image);
  const int places[] = {0, 89, -30, 120, 1000000};
  for (const int xc : places) {
    for (const int yc : places) {
      for (const int w : {0, 1, 60, 400}) {
        const TFacePosition face = {xc, yc, w, 0, 0};
        TPoint points[2] = {{-5, -5}, {-5, -5}};
        ASSERT_EQ(DetectEyesInRegion(&image, &face, points), VIZLE_OK) << xc << ", " << yc << ", " << w;
        for (const TPoint& p : points) {
          ASSERT_TRUE(p.x >= 0 && p.y >= 0 && p.x < 90 && p.y < 70) << xc << ", " << yc << ", " << w;
        }
      }
    }
  }
  EXPECT_EQ(bytesOf(image), before);
}

TEST_F(DetectEyes, RefusesFacesThatNoImageCanHold) {
  TIppiImage image, empty(imGray8);
  fillTextured(image, 90, 70, random_);
  const TFacePosition faces[] = {{45, 35, -1, 0, 0},      {45, 35, INT_MIN, 0, 0},      {45, 35, INT_MAX, 0, 0},
                                 {45, 35, 1000000, 0, 0}, {INT_MAX, INT_MAX, 60, 0, 0}, {INT_MIN, 0, 60, 0, 0},
                                 {45, 35, 65536, 0, 0}};
  for (const TFacePosition& face : faces) {
    TPoint points[2] = {{-5, -5}, {-5, -5}};
    EXPECT_EQ(DetectEyesInRegion(&image, &face, points), VIZLE_INVALID_ARGUMENT) << face.xc << ", " << face.w;
    EXPECT_EQ(points[0].x, -5);
    EXPECT_EQ(points[1].y, -5);
  }
  const TFacePosition face = {45, 35, 60, 0, NAN};
  TPoint points[2];
  EXPECT_EQ(DetectEyesInRegion(&empty, &face, points), VIZLE_INVALID_ARGUMENT);
  EXPECT_EQ(DetectEyesInRegion(&image, &face, points), VIZLE_OK) << "the angle has no effect";
}

}  // namespace
