#include <climits>
#include <cstdlib>

#include "api/handles.h"
#include "image/params.h"
#include "library_fixture.h"

namespace {

constexpr int kDisc = 60;              // diameter, pixels
constexpr int kFace = kDisc * 20 / 8;  // width of the detector's window around it
constexpr TFacePosition kUnset = {-1, -1, -1, -1, -1};

class Detection : public LibraryTest {
 protected:
  void SetUp() override {
    LibraryTest::SetUp();
    UseDiscDetector();
  }

  static int confidence() {
    int value = -1;
    EXPECT_EQ(VIZL_GetDetectedFaceConfidence(&value), VIZLE_OK);
    return value;
  }
};

void expectNear(const TFacePosition& face, int xc, int yc) {
  EXPECT_NEAR(face.xc, xc, kDisc / 4);
  EXPECT_NEAR(face.yc, yc, kDisc / 4);
  EXPECT_NEAR(face.w, kFace, kFace / 4);
}

TEST_F(Detection, FindsAllFacesAndStopsWhereTheRoomEnds) {
  TPicture picture = DiscPicture(600, 400, 150, 150, kDisc);
  const TPicture second = DiscPicture(600, 400, 440, 250, kDisc);
  for (std::size_t i = 0; i < picture.pixels.size(); ++i) {
    picture.pixels[i] = std::max(picture.pixels[i], second.pixels[i]);
  }
  const HImage image = ImageOf(picture);
  TFacePosition faces[5] = {};
  for (TFacePosition& face : faces) face = kUnset;
  int count = -1;
  ASSERT_EQ(VIZL_DetectMultipleFaces(image, &count, faces, sizeof faces), VIZLE_OK);
  ASSERT_EQ(count, 2);
  const int left = faces[0].xc < faces[1].xc ? 0 : 1;
  expectNear(faces[left], 150, 150);
  expectNear(faces[1 - left], 440, 250);
  EXPECT_EQ(faces[2].w, -1);

  TFacePosition first[2] = {kUnset, kUnset};
  ASSERT_EQ(VIZL_DetectMultipleFaces(image, &count, first, 2 * 24 - 1), VIZLE_OK);
  EXPECT_EQ(count, 1);
  EXPECT_EQ(first[0].xc, faces[0].xc);
  EXPECT_EQ(first[1].w, -1) << "no room for a second";
}

TEST_F(Detection, ThePictureOfTheFirstDetectionStays) {
  const HImage image = ImageOf(DiscPicture(600, 400, 210, 150, kDisc));
  const HImage other = ImageOf(PlainPicture(30, 30, 3, 0));
  TFacePosition before = kUnset, after = kUnset;
  ASSERT_EQ(VIZL_DetectFace(image, &before), VIZLE_OK);
  ASSERT_EQ(VIZL_CopyImage(other, image), VIZLE_OK);
  ASSERT_EQ(VIZL_DetectFace(image, &after), VIZLE_OK);
  EXPECT_EQ(after.xc, before.xc);
  EXPECT_EQ(after.yc, before.yc);
  EXPECT_EQ(after.w, before.w);
  EXPECT_EQ(WidthOf(image), 30);
}

TEST_F(Detection, AFaceFreePictureGivesNoFace) {
  const HImage image = ImageOf(PlainPicture(100, 80, 3, 0));
  TFacePosition face = kUnset;
  StoreDetectedFaceConfidence(5);
  EXPECT_EQ(VIZL_DetectFace(image, &face), VIZLE_NO_FACE);
  EXPECT_EQ(face.w, 0);
  EXPECT_EQ(confidence(), 0);
  int count = -1;
  EXPECT_EQ(VIZL_DetectMultipleFaces(image, &count, &face, 24), VIZLE_NO_FACE);
  EXPECT_EQ(count, 0);
}

TEST_F(Detection, SmallPicturesAreToldBeforeAnythingIsWritten) {
  const struct {
    int width, height, code;
  } sizes[] = {{19, 300, VIZLE_IMAGE_TOO_SMALL},
               {300, 19, VIZLE_IMAGE_TOO_SMALL},
               {1, 1, VIZLE_IMAGE_TOO_SMALL},
               {20, 20, VIZLE_NO_FACE}};
  for (const auto& size : sizes) {
    const HImage image = ImageOf(PlainPicture(size.width, size.height, 3, 0));
    TFacePosition face = kUnset;
    int count = -1;
    StoreDetectedFaceConfidence(5);
    EXPECT_EQ(VIZL_DetectMultipleFaces(image, &count, &face, 24), size.code);
    EXPECT_EQ(confidence(), 5) << "only the single-face call tells a confidence";
    EXPECT_EQ(VIZL_DetectFace(image, &face), size.code);
    EXPECT_EQ(confidence(), 0);
    if (size.code == VIZLE_IMAGE_TOO_SMALL) {
      EXPECT_EQ(face.w, -1);
      EXPECT_EQ(count, -1);
    }
  }
  TFacePosition face = kUnset;
  EXPECT_EQ(VIZL_DetectFace(EmptyImage(), &face), VIZLE_IMAGE_TOO_SMALL);
}

TEST_F(Detection, BadArgumentsLeaveTheConfidence) {
  TFacePosition face = kUnset;
  StoreDetectedFaceConfidence(5);
  EXPECT_EQ(VIZL_DetectFace(99, &face), VIZLE_INVALID_ARGUMENT);
  EXPECT_EQ(VIZL_DetectFace(ImageOf(PlainPicture(40, 40, 3, 9)), nullptr), VIZLE_INVALID_ARGUMENT);
  EXPECT_EQ(confidence(), 5);
}

TEST_F(Detection, RoomForLessThanOneFaceIsToldAfterTheHandle) {
  const HImage image = ImageOf(PlainPicture(10, 10, 3, 9));
  TFacePosition face = kUnset;
  int count = -1;
  for (int size : {23, 0, -1, INT_MIN}) {
    EXPECT_EQ(VIZL_DetectMultipleFaces(image, &count, &face, size), VIZLE_BUFFER_TOO_SMALL) << size;
    EXPECT_EQ(VIZL_DetectMultipleFaces(99, &count, &face, size), VIZLE_INVALID_ARGUMENT) << size;
  }
  EXPECT_EQ(count, -1);
  EXPECT_EQ(VIZL_DetectMultipleFaces(image, &count, &face, 24), VIZLE_IMAGE_TOO_SMALL);
}

// A working size beyond the limits of an image throws inside; the exception must end at the boundary.
TEST_F(Detection, AWorkingSizeBeyondTheLimitsIsRefused) {
  const HImage image = ImageOf(DiscPicture(600, 400, 210, 150, kDisc));
  TFacePosition face = kUnset;
  int count = -1;
  ASSERT_EQ(VIZL_SetFaceDetectionParameters(true, true, INT_MAX), VIZLE_OK);
  StoreDetectedFaceConfidence(5);
  EXPECT_EQ(VIZL_DetectFace(image, &face), VIZLE_INVALID_ARGUMENT);
  EXPECT_EQ(confidence(), 0) << "the detection was reached";
  EXPECT_EQ(VIZL_DetectMultipleFaces(image, &count, &face, 24), VIZLE_INVALID_ARGUMENT);
  EXPECT_EQ(GetImagesReads(), 0);
  ASSERT_EQ(VIZL_SetFaceDetectionParameters(true, true, 384), VIZLE_OK);
  EXPECT_EQ(VIZL_DetectFace(image, &face), VIZLE_OK);
}

TEST_F(Detection, ThresholdsComeFromTheContext) {
  const HImage image = ImageOf(DiscPicture(600, 400, 210, 150, kDisc));
  TFacePosition face = kUnset;
  ContextID context;
  ASSERT_EQ(VIZL_CreateContext_ID(&context), VIZLE_OK);
  ASSERT_EQ(VIZL_SetFaceDetectionThreshold(1000000), VIZLE_OK);
  EXPECT_EQ(VIZL_DetectFace(image, &face), VIZLE_NO_FACE);
  EXPECT_EQ(VIZL_DetectFace_C(image, &face, context), VIZLE_OK);
  EXPECT_EQ(VIZL_DetectFace_C(image, &face, 12345), VIZLE_OK) << "an unknown context is no error";
  ASSERT_EQ(VIZL_SetFaceDetectionThreshold_C(1000000, context), VIZLE_OK);
  int count = -1;
  EXPECT_EQ(VIZL_DetectMultipleFaces_C(image, &count, &face, 24, context), VIZLE_NO_FACE);
  EXPECT_EQ(VIZL_FreeContext_ID(context), VIZLE_OK);
}

TEST_F(Detection, TheColoursAndTheAlphaReachTheGrayCopyByTheirRule) {
  const HImage image = ImageOf(RandomPicture(33, 21, 4));
  TFacePosition face;
  VIZL_DetectFace(image, &face);
  const TIppiImage* copy = Images[image]->DetectionCopy;
  ASSERT_NE(copy, nullptr);
  EXPECT_EQ(copy->Mode, imGray8);
  const TPicture gray = PictureOf(image, 1);
  EXPECT_EQ(copy->Pixels[20 * copy->Step + 7], *gray.at(7, 0));
  EXPECT_EQ(copy->Pixels[31], *gray.at(31, 20));
}

}  // namespace
