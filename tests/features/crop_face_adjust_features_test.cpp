#include "features/crop_face_adjust_features.h"

#include <gtest/gtest.h>

#include <climits>

#include "api/vizl_api.h"
#include "tests/features/search_models.h"

namespace {

// 1 at the top left, growing by 1 in x and by 1 in y.
void makeRamp(TIppiImage& image, int width, int height) {
  image.AllocNew(width, height);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) facePixel(image, x, y) = static_cast<unsigned char>(1 + (x + y) / 4);
  }
}

class CropFace : public testing::Test {
 protected:
  void SetUp() override { makeRamp(image, 400, 300); }

  int crop(const TFacePosition& face, int size, TPoint* features = nullptr, int count = 0) {
    return CropFaceAdjustFeatures(&image, face, size, features, count, &scale, &left, &top);
  }

  TIppiImage image{imGray8};
  float scale = -7;
  int left = -7, top = -7;
};

// 100 - 0.55 * 100 falls just short of 45 in doubles.
TEST_F(CropFace, TheSquareIsTruncatedInDoubles) {
  ASSERT_EQ(crop({100, 100, 100, 0, 0}, 128), VIZLE_OK);
  EXPECT_EQ(left, 44);
  EXPECT_EQ(top, 60);
  // From 44 to 155 are 111 columns more, from 60 to 170 only 110 rows: 111 pixels a side.
  EXPECT_FLOAT_EQ(scale, static_cast<float>(128.4 / 111));
  EXPECT_EQ(image.Width, 128);
  EXPECT_EQ(image.Height, 128);
  for (int y = 8; y < 120; y += 16) {
    for (int x = 8; x < 120; x += 16) {
      const double inImage = left + top + (x + y) / static_cast<double>(scale);
      EXPECT_NEAR(facePixel(image, x, y), 1 + inImage / 4, 1.5) << x << ", " << y;
    }
  }
}

TEST_F(CropFace, AlwaysGivesTheWantedSize) {
  for (int w = 0; w < 300; ++w) {
    makeRamp(image, 400, 300);
    ASSERT_EQ(crop({200 + w % 7, 150 - w % 5, w, 0, 0}, 128), VIZLE_OK);
    ASSERT_EQ(image.Width, 128) << w;
    ASSERT_EQ(image.Height, 128) << w;
  }
}

TEST_F(CropFace, FeaturesMoveAlong) {
  TPoint features[] = {{44, 60}, {155, 171}, {43, 300}, {INT_MIN, INT_MAX}};
  ASSERT_EQ(crop({100, 100, 100, 0, 0}, 222, features, 4), VIZLE_OK);
  EXPECT_EQ(features[0].x, 0);
  EXPECT_EQ(features[0].y, 0);
  EXPECT_EQ(features[1].x, 222);
  EXPECT_EQ(features[2].x, -2);
  EXPECT_EQ(features[2].y, 480) << "of 480.8";
  EXPECT_EQ(features[3].x, INT_MIN);
  EXPECT_EQ(features[3].y, INT_MAX);
}

TEST_F(CropFace, OutsideTheImageIsBlack) {
  ASSERT_EQ(crop({0, 0, 100, 0, 0}, 100), VIZLE_OK);
  EXPECT_LT(left, 0);
  EXPECT_EQ(facePixel(image, 5, 5), 0);
  EXPECT_NEAR(facePixel(image, 90, 90), 1 + (45 + 50) / 4, 3);
  makeRamp(image, 400, 300);
  ASSERT_EQ(crop({1000000000, -1000000000, 50, 0, 0}, 20), VIZLE_OK);
  EXPECT_EQ(image.Width, 20);
  EXPECT_EQ(facePixel(image, 10, 10), 0);
}

TEST_F(CropFace, WhatNoImageCanHoldIsRefusedAndNothingChanges) {
  TPoint feature = {5, 6};
  const TFacePosition bad[] = {{100, 100, -1, 0, 0},      {100, 100, INT_MIN, 0, 0}, {100, 100, 60000, 0, 0},
                               {100, 100, INT_MAX, 0, 0}, {INT_MAX, 100, 100, 0, 0}, {INT_MIN, 100, 100, 0, 0},
                               {0, INT_MAX - 5, 10, 0, 0}};
  for (const TFacePosition& face : bad) EXPECT_EQ(crop(face, 128, &feature, 1), VIZLE_INVALID_ARGUMENT) << face.w;
  for (int size : {0, -1, INT_MIN, 65536, INT_MAX}) {
    EXPECT_EQ(crop({100, 100, 50, 0, 0}, size, &feature, 1), VIZLE_INVALID_ARGUMENT) << size;
  }
  EXPECT_EQ(image.Width, 400);
  EXPECT_EQ(facePixel(image, 399, 0), 1 + 399 / 4);
  EXPECT_EQ(feature.x, 5);
  EXPECT_EQ(left, -7);
  EXPECT_EQ(scale, -7);
}

}  // namespace
