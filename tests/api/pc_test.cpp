#include <limits>

#include "api/pc_settings.h"
#include "image/params.h"
#include "library_fixture.h"

namespace {

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr int kUnknown = 99;

class Pc : public DiscTest {
 protected:
  void SetUp() override {
    DiscTest::SetUp();
    ASSERT_EQ(pcCreateContextID(&context), VIZLE_OK);
    ASSERT_EQ(VIZL_SetFaceDetectionParameters_C(false, false, 200, context), VIZLE_OK);
  }

  void TearDown() override {
    pcFreeContextID(context);
    pcSetDetectionPerformance(PcPerformanceBalanced);
    LibraryTest::TearDown();
  }

  static std::string facePath() { return SavedPicture(DiscPicture(640, 480, 300, 200, 60), "face.png"); }

  static void expectNoHandleLeft() {
    const HImage next = EmptyImage();
    EXPECT_EQ(next, 0u) << "an image was left behind";
    EXPECT_EQ(VIZL_FreeImage(next), VIZLE_OK);
  }

  int context = 0;
};

void expectSettings(int context, float scale, float shiftX, float shiftY, int performance) {
  PcFaceRecord settings;
  ASSERT_EQ(ReadPcSettings(context, settings), VIZLE_OK);
  EXPECT_EQ(settings.faceScale, scale);
  EXPECT_EQ(settings.shiftX, shiftX);
  EXPECT_EQ(settings.shiftY, shiftY);
  EXPECT_EQ(settings.performance, performance);
}

TEST_F(Pc, EachSetterMakesItsOwnRecord) {
  ASSERT_EQ(pcSetFaceScale(3), VIZLE_OK);
  ASSERT_EQ(pcSetFaceShift(0.5f, 0.5f), VIZLE_OK);
  ASSERT_EQ(pcSetDetectionPerformance(PcPerformanceThorough), VIZLE_OK);
  expectSettings(0, 3, 0.5f, 0.5f, 2);
  expectSettings(context, 1, 0, 0, 0);
  void* field = &field;
  ASSERT_EQ(VIZL_GetContextUserField(context, &field), VIZLE_OK);
  EXPECT_EQ(field, nullptr) << "reading makes no record";

  int byScale, byShift, byPerformance;
  ASSERT_EQ(pcCreateContextID(&byScale), VIZLE_OK);
  ASSERT_EQ(pcCreateContextID(&byShift), VIZLE_OK);
  ASSERT_EQ(pcCreateContextID(&byPerformance), VIZLE_OK);
  ASSERT_EQ(pcSetFaceScale_C(2, byScale), VIZLE_OK);
  ASSERT_EQ(pcSetFaceShift_C(0.25f, -1, byShift), VIZLE_OK);
  ASSERT_EQ(pcSetDetectionPerformance_C(PcPerformanceBalanced, byPerformance), VIZLE_OK);
  expectSettings(byScale, 2, 0, 0, 0);
  expectSettings(byShift, 1, 0.25f, -1, 0);
  expectSettings(byPerformance, 1, 0, 0, 1);

  ASSERT_EQ(pcSetDetectionPerformance_C(PcPerformanceThorough, byShift), VIZLE_OK);
  ASSERT_EQ(pcSetFaceScale_C(4, byShift), VIZLE_OK);
  expectSettings(byShift, 4, 0.25f, -1, 2);
  expectSettings(0, 3, 0.5f, 0.5f, 2);
  for (int id : {byScale, byShift, byPerformance}) EXPECT_EQ(pcFreeContextID(id), VIZLE_OK);
}

TEST_F(Pc, ScalesMustBeAboveALittle) {
  for (int id : {0, context}) {
    ASSERT_EQ(pcSetFaceScale_C(0.5f, id), VIZLE_OK);
    for (float bad : {0.0f, -1.0f, 0.00001f, -std::numeric_limits<float>::infinity()}) {
      EXPECT_EQ(pcSetFaceScale_C(bad, id), VIZLE_INVALID_ARGUMENT) << bad;
    }
    expectSettings(id, 0.5f, 0, 0, id == 0 ? 1 : 0);
    EXPECT_EQ(pcSetFaceScale_C(0.00002f, id), VIZLE_OK);
    EXPECT_EQ(pcSetFaceScale_C(kNaN, id), VIZLE_OK) << "the setter lets it pass, the cut does not";
  }
  const HImage image = ImageOf(DiscPicture(640, 480, 300, 200, 60)), portrait = EmptyImage();
  EXPECT_EQ(pcPortraitCut_HImageToHImage_C(image, portrait, 9, 9, 0), VIZLE_INVALID_ARGUMENT);
  EXPECT_EQ(pcPortraitCut_HImageToHImage_C(image, portrait, 9, 9, context), VIZLE_INVALID_ARGUMENT);
}

TEST_F(Pc, PerformancesSetTheDetectionParameters) {
  const struct {
    PcDetectionPerformance value;
    bool rotations, angle;
    int width;
  } rows[] = {{PcPerformanceFast, false, false, 100},
              {PcPerformanceBalanced, true, false, 256},
              {PcPerformanceThorough, true, true, 384}};
  for (int id : {0, context}) {
    for (const auto& row : rows) {
      ASSERT_EQ(pcSetDetectionPerformance_C(row.value, id), VIZLE_OK);
      EXPECT_EQ(ContextHandleArbitraryRotations(id), row.rotations);
      EXPECT_EQ(ContextDetermineFaceRotationAngle(id), row.angle);
      EXPECT_EQ(ContextInternalResizeWidth(id), row.width);
    }
    for (int bad : {7, 3, -1}) {
      EXPECT_EQ(pcSetDetectionPerformance_C(bad, id), VIZLE_INVALID_ARGUMENT);
      PcFaceRecord settings;
      ASSERT_EQ(ReadPcSettings(id, settings), VIZLE_OK);
      EXPECT_EQ(settings.performance, bad) << "stored all the same";
      EXPECT_EQ(ContextInternalResizeWidth(id), 384) << "the parameters stay";
    }
  }
}

TEST_F(Pc, UnknownContextsAreRefusedEverywhere) {
  const std::string face = facePath(), output = TemporaryPath("unknown.png");
  const HImage image = ImageOf(RandomPicture(30, 30, 3));
  int n;
  for (int id : {kUnknown, -1}) {
    EXPECT_EQ(pcSetFaceScale_C(1, id), VIZLE_INVALID_ARGUMENT);
    EXPECT_EQ(pcSetFaceShift_C(0, 0, id), VIZLE_INVALID_ARGUMENT);
    EXPECT_EQ(pcSetDetectionPerformance_C(PcPerformanceThorough, id), VIZLE_INVALID_ARGUMENT);
    EXPECT_EQ(pcSetDetectionThreshold_C(3, id), VIZLE_INVALID_ARGUMENT);
    EXPECT_EQ(pcSetJpegQuality_C(90, id), VIZLE_INVALID_ARGUMENT);
    EXPECT_EQ(pcFreeContextID(id), VIZLE_INVALID_ARGUMENT);
    EXPECT_EQ(pcPortraitCut_C(face.c_str(), output.c_str(), 9, 9, id), VIZLE_INVALID_ARGUMENT);
    EXPECT_EQ(pcPortraitCut_HImageToHImage_C(image, image, 9, 9, id), VIZLE_INVALID_ARGUMENT);
    EXPECT_EQ(pcGetFacePosition_C(face.c_str(), 9, 9, &n, &n, &n, &n, id), VIZLE_INVALID_ARGUMENT);
    EXPECT_EQ(pcGetFacePositionInHImageAndFree_C(image, 9, 9, &n, &n, &n, &n, id), VIZLE_INVALID_ARGUMENT);
    EXPECT_TRUE(IsValid(image)) << "without settings the handle stays open";
  }
  EXPECT_FALSE(std::filesystem::exists(output));
  EXPECT_EQ(VIZL_FreeImage(image), VIZLE_OK);
  expectNoHandleLeft();
}

TEST_F(Pc, CutsFromFileToFile) {
  const std::string face = facePath(), png = TemporaryPath("out.png"), other = TemporaryPath("out.out");
  ASSERT_EQ(pcPortraitCut(face.c_str(), png.c_str(), 60, 80), VIZLE_OK);
  ASSERT_EQ(pcPortraitCut_C(face.c_str(), other.c_str(), 60, 80, context), VIZLE_OK);
  expectNoHandleLeft();
  EXPECT_EQ(readFile(png).at(1), 'P');
  EXPECT_EQ(readFile(other).at(0), 0xFF) << "any other name means JPEG";

  HImage image, cut, saved;
  ASSERT_EQ(VIZL_LoadImageFromFile(&image, face.c_str()), VIZLE_OK);
  ASSERT_EQ(VIZL_CreateEmptyImage(&cut), VIZLE_OK);
  ASSERT_EQ(VIZL_PortraitCut(image, 60, 80, 1, 0, 0, false, cut), VIZLE_OK);
  ASSERT_EQ(VIZL_LoadImageFromFile(&saved, png.c_str()), VIZLE_OK);
  EXPECT_TRUE(PictureOf(saved, 3) == PictureOf(cut, 3));
}

TEST_F(Pc, PassesScaleAndShiftOn) {
  const std::string face = facePath();
  const HImage image = ImageOf(DiscPicture(640, 480, 300, 200, 60)), expected = EmptyImage(), cut = EmptyImage();
  ASSERT_EQ(pcSetFaceScale_C(1.5f, context), VIZLE_OK);
  ASSERT_EQ(pcSetFaceShift_C(0.125f, -0.25f, context), VIZLE_OK);
  ASSERT_EQ(VIZL_PortraitCut(image, 50, 70, 1.5, 0.125, -0.25, false, expected), VIZLE_OK);
  ASSERT_EQ(pcPortraitCut_HImageToHImage_C(image, cut, 50, 70, context), VIZLE_OK);
  EXPECT_TRUE(PictureOf(cut, 3) == PictureOf(expected, 3));

  int expectedFrame[4], frame[4];
  ASSERT_EQ(VIZL_GetFacePosition(image, 50, 70, 1.5, 0.125, -0.25, false, expectedFrame, expectedFrame + 1,
                                 expectedFrame + 2, expectedFrame + 3),
            VIZLE_OK);
  ASSERT_EQ(pcGetFacePosition_C(face.c_str(), 50, 70, frame, frame + 1, frame + 2, frame + 3, context), VIZLE_OK);
  EXPECT_TRUE(std::equal(frame, frame + 4, expectedFrame));
  ASSERT_EQ(pcGetFacePosition(face.c_str(), 50, 70, frame, frame + 1, frame + 2, frame + 3), VIZLE_OK);
  EXPECT_FALSE(std::equal(frame, frame + 4, expectedFrame)) << "the process has other settings";
  ASSERT_EQ(pcGetFacePositionInHImageAndFree_C(image, 50, 70, frame, frame + 1, frame + 2, frame + 3, context),
            VIZLE_OK);
  EXPECT_TRUE(std::equal(frame, frame + 4, expectedFrame));
  EXPECT_FALSE(IsValid(image));
}

TEST_F(Pc, FailuresLeaveNoFileAndNoHandle) {
  const std::string missing = TemporaryPath("missing.png"),
                    plain = SavedPicture(PlainPicture(64, 48, 3, 0), "plain.png"), output = TemporaryPath("none.png");
  int n = 5;
  EXPECT_EQ(pcPortraitCut(missing.c_str(), output.c_str(), 9, 9), VIZLE_CANNOT_OPEN_FILE);
  EXPECT_EQ(pcGetFacePosition(missing.c_str(), 9, 9, &n, &n, &n, &n), VIZLE_CANNOT_OPEN_FILE);
  EXPECT_EQ(pcPortraitCut(plain.c_str(), output.c_str(), 9, 9), VIZLE_NO_FACE);
  EXPECT_EQ(pcPortraitCut_C(plain.c_str(), output.c_str(), 9, 9, context), VIZLE_NO_FACE);
  EXPECT_EQ(pcPortraitCut(plain.c_str(), output.c_str(), 0, 9), VIZLE_INVALID_ARGUMENT);
  EXPECT_EQ(pcGetFacePosition(plain.c_str(), 9, 9, &n, &n, &n, &n), VIZLE_NO_FACE);
  EXPECT_EQ(pcPortraitCut(facePath().c_str(), nullptr, 9, 9), VIZLE_INVALID_ARGUMENT);
  EXPECT_EQ(pcPortraitCut(facePath().c_str(), "/no/such/folder/a.png", 9, 9), VIZLE_CANNOT_CREATE_FILE);
  EXPECT_FALSE(std::filesystem::exists(output));
  EXPECT_EQ(n, 5);
  expectNoHandleLeft();
}

TEST_F(Pc, AFailedLoadKeepsItsHandleUntilTheEnd) {
  const std::string path = TemporaryPath("bad.png");
  writeFile(path, {1, 2, 3});
  EXPECT_EQ(pcPortraitCut(path.c_str(), TemporaryPath("none.png").c_str(), 9, 9), VIZLE_BAD_IMAGE_FILE);
  EXPECT_EQ(EmptyImage(), 1u);
}

TEST_F(Pc, TheHandleIsFreedAlsoWhenThereIsNoFace) {
  const HImage image = ImageOf(PlainPicture(64, 48, 3, 0));
  int n;
  EXPECT_EQ(pcGetFacePositionInHImageAndFree_C(image, 9, 9, &n, &n, &n, &n, 0), VIZLE_NO_FACE);
  EXPECT_FALSE(IsValid(image));
}

}  // namespace
