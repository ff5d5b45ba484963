#include "image/view.h"

#include <climits>

#include "tests/image/pictures.h"

namespace {

class View : public testing::TestWithParam<TIppiImageMode> {};

TEST_P(View, ResizesAsACopyOfTheRectangleWould) {
  std::mt19937 random(21);
  TIppiImage image(GetParam());
  fillRandom(image, 83, 61, 4);
  for (int k = 0; k < 60; ++k) {
    const int x1 = static_cast<int>(random() % 83);
    const int y1 = static_cast<int>(random() % 61);
    const int x2 = x1 + static_cast<int>(random() % static_cast<unsigned>(83 - x1));
    const int y2 = y1 + static_cast<int>(random() % static_cast<unsigned>(61 - y1));
    const double ratio = 0.2 + 0.01 * static_cast<double>(random() % 200);
    TIppiImage copy, fromCopy, fromView;
    image.CopyTo(copy, x1, y1, x2, y2);
    copy.Resize(fromCopy, ratio);
    ASSERT_TRUE(TImageView::Fits(image, x1, y1, x2, y2));
    TImageView(image, x1, y1, x2, y2).Resize(fromView, ratio);
    ASSERT_TRUE(samePicture(fromCopy, fromView)) << x1 << ' ' << y1 << ' ' << x2 << ' ' << y2 << ' ' << ratio;
  }
}

TEST_P(View, FitsOnlyInsideAnImageThatHasPixels) {
  TIppiImage image(GetParam());
  EXPECT_FALSE(TImageView::Fits(image, 0, 0, 0, 0));
  image.AllocNew(10, 8);
  EXPECT_TRUE(TImageView::Fits(image, 0, 0, 9, 7));
  EXPECT_TRUE(TImageView::Fits(image, 9, 7, 9, 7));
  EXPECT_FALSE(TImageView::Fits(image, -1, 0, 9, 7));
  EXPECT_FALSE(TImageView::Fits(image, 0, -1, 9, 7));
  EXPECT_FALSE(TImageView::Fits(image, 0, 0, 10, 7));
  EXPECT_FALSE(TImageView::Fits(image, 0, 0, 9, 8));
  EXPECT_FALSE(TImageView::Fits(image, 5, 0, 4, 7));
  EXPECT_FALSE(TImageView::Fits(image, INT_MIN, INT_MIN, INT_MAX, INT_MAX));
}

INSTANTIATE_TEST_SUITE_P(Modes, View, testing::ValuesIn(kByteModes),
                         [](const auto& mode) { return modeName(mode.param); });

TEST(ViewModes, FloatImagesAreNotViewed) {
  TIppiImage image(imGray32f);
  image.AllocNew(10, 8);
  EXPECT_FALSE(TImageView::Fits(image, 0, 0, 9, 7));
}

}  // namespace
