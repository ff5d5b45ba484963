#include "api/handles.h"

#include "library_fixture.h"

namespace {

using Handles = LibraryTest;

TEST_F(Handles, TheLowestFreeNumberComesBackFirst) {
  for (HImage expected = 0; expected < 5; ++expected) EXPECT_EQ(EmptyImage(), expected);
  for (HImage handle : {3u, 1u, 4u}) EXPECT_EQ(VIZL_FreeImage(handle), VIZLE_OK);
  EXPECT_EQ(EmptyImage(), 1u);
  EXPECT_EQ(EmptyImage(), 3u);
  EXPECT_EQ(EmptyImage(), 4u);
  EXPECT_EQ(EmptyImage(), 5u);
}

TEST_F(Handles, ANewImageIsEmptyAlsoInAnOldSlot) {
  const HImage image = ImageOf(RandomPicture(7, 5, 4));
  ASSERT_EQ(VIZL_FreeImage(image), VIZLE_OK);
  ASSERT_EQ(EmptyImage(), image);
  const TView view = ViewOf(image);
  EXPECT_EQ(view.data, nullptr);
  EXPECT_EQ(view.width, 0);
  EXPECT_EQ(view.height, 0);
  EXPECT_EQ(view.mode, VIZL_IMAGE_COLOR24);
}

TEST_F(Handles, FreeingWhatIsNotThereIsNoErrorAndTouchesNothing) {
  const HImage first = ImageOf(RandomPicture(7, 5, 3, 1));
  const HImage second = ImageOf(RandomPicture(6, 4, 3, 2));
  EXPECT_EQ(VIZL_FreeImage(first), VIZLE_OK);
  EXPECT_EQ(VIZL_FreeImage(first), VIZLE_OK);
  EXPECT_EQ(VIZL_FreeImage(2), VIZLE_OK);
  EXPECT_EQ(VIZL_FreeImage(0xFFFFFFFFu), VIZLE_OK);
  EXPECT_FALSE(IsValid(first));
  EXPECT_TRUE(PictureOf(second, 3) == RandomPicture(6, 4, 3, 2));
}

TEST_F(Handles, LookupsAreCountedOutOnEveryPath) {
  const HImage image = ImageOf(RandomPicture(7, 5, 3));
  const TPicture picture = RandomPicture(7, 5, 3);
  int number;
  VIZL_GetImageWidth(image, &number);
  VIZL_GetImageWidth(99, &number);
  VIZL_GetImageWidth(image, nullptr);
  VIZL_CopyImage(image, 99);
  VIZL_AssignImageFromBuffer(image, picture.pixels.data(), 70000, 70000, 1, 1);
  VIZL_ResizeImage(image, 1e6, image);
  TFacePosition face;
  VIZL_DetectFace(image, &face);
  EXPECT_EQ(GetImagesReads(), 0);
}

TEST_F(Handles, TheSlotOfADetectedImageStartsWithoutADetectionCopy) {
  UseDiscDetector();
  const HImage image = ImageOf(RandomPicture(40, 40, 3));
  TFacePosition face;
  VIZL_DetectFace(image, &face);
  EXPECT_NE(Images[image]->DetectionCopy.load(), nullptr);
  ASSERT_EQ(VIZL_FreeImage(image), VIZLE_OK);
  ASSERT_EQ(EmptyImage(), image);
  EXPECT_EQ(Images[image]->DetectionCopy.load(), nullptr);
  EXPECT_EQ(VIZL_DetectFace(image, &face), VIZLE_IMAGE_TOO_SMALL);
}

TEST_F(Handles, AFillThatFailsLeavesTheImage) {
  const HImage image = ImageOf(RandomPicture(7, 5, 3));
  EXPECT_THROW(ReplaceImage(*Images[image],
                            [](TIppiImage& fresh) {
                              fresh.AllocNew(10, 10);
                              throw std::bad_alloc();
                            }),
               std::bad_alloc);
  EXPECT_TRUE(PictureOf(image, 3) == RandomPicture(7, 5, 3));
}

}  // namespace
