// VIZL_GetFacePosition and VIZL_PortraitCut.
#include <climits>
#include <cmath>
#include <limits>

#include "library_fixture.h"

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

struct Frame {
  int x1 = -7, y1 = -7, x2 = -7, y2 = -7;
  bool operator==(const Frame&) const = default;
};

class Portrait : public DiscTest {
 protected:
  static int32_t find(HImage image, int width, int height, double scale, double shiftX, double shiftY, Frame& f) {
    return VIZL_GetFacePosition(image, width, height, scale, shiftX, shiftY, false, &f.x1, &f.y1, &f.x2, &f.y2);
  }
};

// By features, the frame is the one around a face at the found eyes, whatever they are.
TEST_F(Portrait, FeaturesFrameByTheEyes) {
  const HImage image = ImageOf(DiscPicture(900, 700, 450, 350, 60));
  TFacePosition face;
  int32_t count;
  ASSERT_EQ(VIZL_DetectMultipleFaces(image, &count, &face, sizeof(face)), VIZLE_OK);
  TPoint points[40];
  ASSERT_EQ(VIZL_DetectFacialFeaturesInRegion(image, &face, &points), VIZLE_OK);
  const double distance = std::hypot(points[0].x - points[1].x, points[0].y - points[1].y);
  Frame f;
  ASSERT_EQ(VIZL_GetFacePosition(image, 400, 400, 1, 0, 0, true, &f.x1, &f.y1, &f.x2, &f.y2), VIZLE_OK);
  EXPECT_EQ((f.x1 + f.x2) / 2, (points[0].x + points[1].x) / 2);
  EXPECT_EQ((f.y1 + f.y2) / 2, (points[0].y + points[1].y) / 2);
  EXPECT_EQ(f.x2 - f.x1, 2 * static_cast<int>(0.6 * static_cast<int>(2.4 * distance)));
}

// The cut has to be what an application gets by the same steps on handles.
TEST_F(Portrait, TheCutEqualsItsStepsOnHandles) {
  const struct {
    int width, height;
    double scale, shiftX, shiftY;
  } wishes[] = {{60, 80, 1, 0, 0}, {400, 300, 1, 0.1, -0.2}, {33, 33, 2.5, 0, 0}, {1, 1, 1, 0, 0}, {301, 7, 0.4, 0, 0}};
  for (const auto& wish : wishes) {
    for (int channels : {3, 4}) {
      TPicture picture = DiscPicture(640, 480, 300, 200, 60);
      HImage image = ImageOf(picture);
      if (channels == 4) {
        picture = PictureOf(image, 4);
        ASSERT_EQ(VIZL_FreeImage(image), VIZLE_OK);
        image = ImageOf(picture);
      }
      const HImage portrait = EmptyImage(), cut = EmptyImage(), scaled = EmptyImage();
      ASSERT_EQ(VIZL_PortraitCut(image, wish.width, wish.height, wish.scale, wish.shiftX, wish.shiftY, false, portrait),
                VIZLE_OK);
      Frame f;
      ASSERT_EQ(find(image, wish.width, wish.height, wish.scale, wish.shiftX, wish.shiftY, f), VIZLE_OK);
      ASSERT_EQ(VIZL_CopyRect(image, f.x1, f.y1, f.x2, f.y2, cut), VIZLE_OK);
      const double byWidth = (wish.width + 0.4) / WidthOf(cut), byHeight = (wish.height + 0.4) / HeightOf(cut);
      ASSERT_EQ(VIZL_ResizeImage(cut, std::max(byWidth, byHeight), scaled), VIZLE_OK);
      const int x1 = WidthOf(scaled) / 2 - wish.width / 2, y1 = HeightOf(scaled) / 2 - wish.height / 2;
      ASSERT_EQ(VIZL_CopyRect(scaled, x1, y1, x1 + wish.width - 1, y1 + wish.height - 1, cut), VIZLE_OK);
      EXPECT_EQ(WidthOf(portrait), wish.width);
      EXPECT_EQ(HeightOf(portrait), wish.height);
      EXPECT_TRUE(PictureOf(portrait, channels) == PictureOf(cut, channels)) << wish.width << " x " << wish.height;
      EXPECT_TRUE(PictureOf(image, channels) == picture) << "the source stays";
    }
  }
}

TEST_F(Portrait, APictureCanBeReplacedByItsPortrait) {
  const TPicture picture = DiscPicture(640, 480, 300, 200, 60);
  const HImage image = ImageOf(picture), same = ImageOf(picture), portrait = EmptyImage();
  ASSERT_EQ(VIZL_PortraitCut(image, 60, 80, 1, 0, 0, false, portrait), VIZLE_OK);
  ASSERT_EQ(VIZL_PortraitCut(same, 60, 80, 1, 0, 0, false, same), VIZLE_OK);
  EXPECT_TRUE(PictureOf(same, 3) == PictureOf(portrait, 3));
}

TEST_F(Portrait, NumbersOutOfRangeAreRefusedBeforeTheDetection) {
  const HImage small = ImageOf(PlainPicture(10, 10, 3, 1)), destination = ImageOf(RandomPicture(4, 4, 3));
  Frame frame;
  EXPECT_EQ(find(small, 9, INT_MIN, 1, 0, 0, frame), VIZLE_INVALID_ARGUMENT);
  EXPECT_EQ(frame, Frame());
  EXPECT_EQ(VIZL_PortraitCut(small, 9, 9, 1, 0, kNaN, false, destination), VIZLE_INVALID_ARGUMENT);
  EXPECT_EQ(find(small, 9, 9, 1, 0, 0, frame), VIZLE_IMAGE_TOO_SMALL) << "good numbers get to the picture";
  EXPECT_EQ(VIZL_PortraitCut(small, 9, 9, 1, 0, 0, false, destination), VIZLE_IMAGE_TOO_SMALL);
  EXPECT_TRUE(PictureOf(destination, 3) == RandomPicture(4, 4, 3));
}

TEST_F(Portrait, AFailureLeavesTheOutputs) {
  const HImage plain = ImageOf(PlainPicture(90, 90, 3, 0)), destination = ImageOf(RandomPicture(4, 4, 3));
  const HImage face = ImageOf(DiscPicture(640, 480, 300, 200, 60));
  Frame frame;
  EXPECT_EQ(find(plain, 9, 9, 1, 0, 0, frame), VIZLE_NO_FACE);
  EXPECT_EQ(VIZL_PortraitCut(plain, 9, 9, 1, 0, 0, false, destination), VIZLE_NO_FACE);
  // Numbers that are good alone but lead to a frame that no int holds, or to an image beyond the limits.
  EXPECT_EQ(find(face, 9, 9, 1, 1e300, 0, frame), VIZLE_INVALID_ARGUMENT);
  EXPECT_EQ(find(face, INT_MAX, 1, 1, 0, 0, frame), VIZLE_INVALID_ARGUMENT);
  EXPECT_EQ(VIZL_PortraitCut(face, 70000, 70000, 1, 0, 0, false, destination), VIZLE_INVALID_ARGUMENT);
  EXPECT_EQ(VIZL_PortraitCut(face, INT_MAX, INT_MAX, 1, 0, 0, false, destination), VIZLE_INVALID_ARGUMENT);
  EXPECT_EQ(frame, Frame());
  EXPECT_TRUE(PictureOf(destination, 3) == RandomPicture(4, 4, 3));
}

// Faces come from the picture of the first detection, the room from the one that is there now.
TEST_F(Portrait, AnOverwrittenPictureIsFramedByItsNewSize) {
  const HImage image = ImageOf(DiscPicture(640, 480, 540, 350, 60));
  TFacePosition face;
  ASSERT_EQ(VIZL_DetectFace(image, &face), VIZLE_OK);
  ASSERT_EQ(VIZL_CopyImage(ImageOf(RandomPicture(100, 80, 3)), image), VIZLE_OK);
  Frame frame;
  ASSERT_EQ(find(image, 50, 50, 1, 0, 0, frame), VIZLE_OK);
  EXPECT_TRUE(frame.x1 >= 0 && frame.y1 >= 0 && frame.x2 < 100 && frame.y2 < 80);

  const HImage destination = EmptyImage();
  ASSERT_EQ(VIZL_CopyImage(EmptyImage(), image), VIZLE_OK);
  EXPECT_EQ(VIZL_PortraitCut(image, 50, 50, 1, 0, 0, false, destination), VIZLE_OK);
  EXPECT_TRUE(PictureOf(destination, 3) == PlainPicture(50, 50, 3, 0));
}

TEST_F(Portrait, TheContextRulesTheDetection) {
  const HImage image = ImageOf(DiscPicture(640, 480, 300, 200, 60)), destination = EmptyImage();
  ContextID context;
  ASSERT_EQ(VIZL_CreateContext_ID(&context), VIZLE_OK);
  ASSERT_EQ(VIZL_SetFaceDetectionThreshold_C(1000000, context), VIZLE_OK);
  Frame f;
  EXPECT_EQ(VIZL_GetFacePosition_C(image, 9, 9, 1, 0, 0, false, &f.x1, &f.y1, &f.x2, &f.y2, context), VIZLE_NO_FACE);
  EXPECT_EQ(VIZL_PortraitCut_C(image, 9, 9, 1, 0, 0, false, destination, context), VIZLE_NO_FACE);
  EXPECT_EQ(VIZL_PortraitCut_C(image, 9, 9, 1, 0, 0, false, destination, 4711), VIZLE_OK);
  EXPECT_EQ(VIZL_FreeContext_ID(context), VIZLE_OK);
}

}  // namespace
