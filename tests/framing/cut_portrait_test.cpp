#include <gtest/gtest.h>

#include <random>

#include "framing/portrait_frame.h"
#include "tests/framing/ramp.h"

namespace {

TEST(CutPortrait, HasExactlyTheWantedSizeWhateverTheFrame) {
  std::mt19937 random(7);
  const auto pick = [&](int low, int high) { return std::uniform_int_distribution<int>(low, high)(random); };
  TIppiImage image(imRGB24);
  makeRamp(image, 120, 100, 2);
  for (int i = 0; i < 300; ++i) {
    const TPortraitFrame frame = {pick(0, 59), pick(0, 49), pick(60, 119), pick(50, 99)};
    const int width = pick(1, 90), height = pick(1, 90);
    TIppiImage portrait;
    CutPortrait(image, frame, width, height, portrait);
    ASSERT_EQ(portrait.Width, width);
    ASSERT_EQ(portrait.Height, height);
    ASSERT_EQ(portrait.Mode, imRGB24);
    // What lay outside the scaled frame would be 0 in all channels. The ramp is only 0 at its very edge, so a black
    // middle would show a cut that missed.
    if (frame.x1 > 4 && frame.y1 > 4) {
      for (int corner = 0; corner < 4; ++corner) {
        const unsigned char* p = pixelAt(portrait, corner % 2 ? width - 1 : 0, corner / 2 ? height - 1 : 0);
        ASSERT_GT(p[0], 0) << width << " x " << height << " from " << frame.x1 << " to " << frame.x2;
        ASSERT_GT(p[1], 0);
      }
    }
  }
}

TEST(CutPortrait, ShowsTheFrameFromEdgeToEdge) {
  TIppiImage image(imRGB24), portrait;
  makeRamp(image, 120, 100, 2);
  CutPortrait(image, {20, 10, 99, 89}, 40, 40, portrait);
  // A pixel of the result is the mean of about two columns: 40 + 1 on the left, 198 - 1 on the right.
  EXPECT_NEAR(pixelAt(portrait, 0, 0)[0], 41, 2);
  EXPECT_NEAR(pixelAt(portrait, 39, 0)[0], 197, 3);
  EXPECT_NEAR(pixelAt(portrait, 0, 0)[1], 21, 3);
  EXPECT_NEAR(pixelAt(portrait, 0, 39)[1], 177, 3);
}

TEST(CutPortrait, LosesEqualStripsOfTheSideThatOvershoots) {
  TIppiImage image(imRGB24), portrait;
  makeRamp(image, 120, 100, 2);
  // A square frame for an output of twice its width: the ratio is 1, and of the height of 80 the middle 40 stay.
  CutPortrait(image, {20, 10, 99, 89}, 80, 40, portrait);
  EXPECT_NEAR(pixelAt(portrait, 40, 0)[1], 60, 2);
  EXPECT_NEAR(pixelAt(portrait, 40, 39)[1], 138, 2);
}

}  // namespace
