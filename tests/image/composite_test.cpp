#include <climits>

#include "primitives/ippi.h"
#include "tests/image/pictures.h"

namespace {

// One pixel composited by the primitive, so that this file is about the geometry only.
Pixel over(Pixel a, Pixel b) {
  Pixel result;
  ippiAlphaComp_8u_AC4R(a.data(), 4, b.data(), 4, result.data(), 4, {1, 1}, ippAlphaOver);
  return result;
}

// Composited are the overlap's pixels but for its last column and its top row.
void checkPutOver(int x, int y, TIppiImage& overlay, TIppiImage& back, TIppiImage& result) {
  TIppiImage before;
  before.Assign(result);
  overlay.PutOver(back, result, x, y);
  const int right = std::min(x + overlay.Width, back.Width) - 1;
  const int top = std::max(y, 0);
  const auto expected = [&](int u, int v) {
    const bool inside = u >= x && u < right && v > top && v < y + overlay.Height;
    return inside ? over(pixelAt(overlay, u - x, v - y), pixelAt(back, u, v)) : pixelAt(before, u, v);
  };
  ASSERT_TRUE(pixelsAre(result, back.Width, back.Height, expected)) << "for " << x << ", " << y;
}

TEST(PutOver, CompositesTheOverlapAtEveryPlace) {
  TIppiImage overlay(imRGBA32), back(imRGBA32), result(imRGBA32);
  for (const auto& [width, height] : {std::pair{7, 5}, {30, 4}, {3, 25}, {30, 25}, {1, 1}}) {
    fillRandom(overlay, width, height, 51);
    for (int y = -height - 2; y < 14; ++y) {
      for (int x = -width - 2; x < 19; x += 3) {
        fillRandom(back, 16, 11, 52);
        fillRandom(result, 16, 11, 53);
        checkPutOver(x, y, overlay, back, result);
      }
    }
  }
}

TEST(PutOver, FarPlacesDoNotOverflow) {
  TIppiImage overlay(imRGBA32), back(imRGBA32), result(imRGBA32), before;
  fillRandom(overlay, 5, 5, 54);
  fillRandom(back, 9, 9, 55);
  fillRandom(result, 9, 9, 56);
  before.Assign(result);
  for (const int x : {INT_MIN, INT_MAX, 0}) {
    for (const int y : {INT_MIN, INT_MAX}) overlay.PutOver(back, result, x, y);
  }
  EXPECT_TRUE(samePicture(result, before));
}

TEST(PutOver, ResultMayBeTheBackgroundOrTheOverlay) {
  TIppiImage overlay(imRGBA32), back(imRGBA32), result;
  fillRandom(overlay, 12, 12, 57);
  fillRandom(back, 12, 12, 58);
  result.Assign(back);
  overlay.PutOver(back, result, -3, 2);
  overlay.PutOver(back, back, -3, 2);
  EXPECT_TRUE(samePicture(back, result));
  result.Assign(overlay);
  overlay.PutOver(back, result, 4, -2);
  overlay.PutOver(back, overlay, 4, -2);
  EXPECT_TRUE(samePicture(overlay, result));
}

TEST(PutOver, OtherModesEmptyPicturesAndSmallResultsAreSafe) {
  TIppiImage overlay(imRGBA32), back(imRGBA32), small(imRGBA32), gray(imGray8), empty(imRGBA32);
  fillRandom(overlay, 10, 10, 59);
  fillRandom(back, 10, 10, 60);
  fillRandom(small, 4, 3, 61);
  fillRandom(gray, 10, 10, 62);
  for (TIppiImage* a : {&overlay, &small, &gray, &empty}) {
    for (TIppiImage* b : {&overlay, &small, &gray, &empty}) {
      for (TIppiImage* c : {&back, &small, &gray, &empty}) a->PutOver(*b, *c, 1, 1);
    }
  }
}

TEST(AddAlpha, FillsTheAlphaChannelOnly) {
  TIppiImage image(imRGBA32), before, alpha(imGray8);
  fillRandom(image, 9, 7, 63);
  before.Assign(image);
  fillRandom(alpha, 9, 7, 64);
  image.AddAlpha(alpha);
  EXPECT_TRUE(pixelsAre(image, 9, 7, [&](int x, int y) {
    const Pixel colour = pixelAt(before, x, y);
    return Pixel{colour[0], colour[1], colour[2], pixelAt(alpha, x, y)[0]};
  }));
  EXPECT_TRUE(soundImage(image));
}

TEST(AddAlpha, IsRefusedByOtherModesAndBySmallerAlpha) {
  TIppiImage image(imRGBA32), colour(imRGB24), before, small(imGray8);
  fillRandom(image, 9, 7, 65);
  before.Assign(image);
  fillRandom(small, 9, 6, 66);
  image.AddAlpha(small);
  EXPECT_TRUE(samePicture(image, before));
  fillRandom(colour, 5, 5, 67);
  before.Assign(colour);
  colour.AddAlpha(small);
  EXPECT_TRUE(samePicture(colour, before));
  TIppiImage empty(imRGBA32);
  empty.AddAlpha(small);
  image.AddAlpha(image);
}

}  // namespace
