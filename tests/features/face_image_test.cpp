#include "features/face_image.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <limits>
#include <ostream>
#include <random>
#include <utility>

#include "api/vizl_api.h"
#include "features/mean_grid.h"
#include "tests/features/search_models.h"

namespace {

void fill(TIppiImage& image, int width, int height, unsigned char value) {
  image.AllocNew(width, height);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) facePixel(image, x, y) = value;
  }
}

struct KnownFace {
  TFacePosition face;
  int width, height;
  TSPoint inFace[3];   // nodes 0, 1 and 29 of the expected grid
  TSPoint inImage[3];  // and on the way back
};
constexpr std::size_t kKnownNodes[] = {0, 1, 29};

void PrintTo(const KnownFace& known, std::ostream* out) {
  *out << "w " << known.face.w << ", angle " << known.face.angle;
}

class FaceImageKnown : public testing::TestWithParam<KnownFace> {};

// The numbers come from a program of its own, in another language, that follows the floats of every step.
TEST_P(FaceImageKnown, LiesWhereAnotherProgramPutsIt) {
  const KnownFace& known = GetParam();
  TIppiImage image(imGray8);
  image.AllocNew(known.width, known.height);
  TFaceImage faceImage;
  ASSERT_EQ(faceImage.Cut(image, known.face), VIZLE_OK);
  TGrid back = faceImage.Expected;
  faceImage.BackToImage(back);
  for (std::size_t k = 0; k < 3; ++k) {
    EXPECT_EQ(faceImage.Expected.Nodes[kKnownNodes[k]].x, known.inFace[k].x) << k;
    EXPECT_EQ(faceImage.Expected.Nodes[kKnownNodes[k]].y, known.inFace[k].y) << k;
    EXPECT_EQ(back.Nodes[kKnownNodes[k]].x, known.inImage[k].x) << k;
    EXPECT_EQ(back.Nodes[kKnownNodes[k]].y, known.inImage[k].y) << k;
  }
}

INSTANTIATE_TEST_SUITE_P(
    Faces, FaceImageKnown,
    testing::Values(KnownFace{{300, 250, 150, 0, 0},
                              600,
                              500,
                              {{97.9889297f, 130.838547f}, {156.720062f, 130.838547f}, {128.847672f, 235.360092f}},
                              {{269.0f, 237.0f}, {327.999969f, 237.0f}, {300.0f, 342.0f}}},
                    KnownFace{{211, 187, 93, 0, -12},
                              640,
                              480,
                              {{99.2360001f, 130.573074f}, {158.20166f, 130.573074f}, {130.217957f, 235.511902f}},
                              {{192.107071f, 175.648026f}, {227.887711f, 183.253448f}, {197.372025f, 243.321487f}}},
                    KnownFace{{400, 300, 233, 0, 16.5},
                              800,
                              600,
                              {{98.0783768f, 129.123611f}, {156.933426f, 129.123611f}, {129.002213f, 233.865631f}},
                              {{353.71106f, 295.830017f}, {441.58374f, 269.800964f}, {446.204346f, 438.537262f}}},
                    KnownFace{{30, 25, 80, 0, 6},
                              200,
                              150,
                              {{98.2996902f, 131.176514f}, {156.775269f, 131.176514f}, {129.024155f, 235.243225f}},
                              {{13.6406116f, 20.0414886f}, {44.9348946f, 16.7523251f}, {35.9369736f, 74.0065231f}}},
                    KnownFace{{610, 450, 120, 0, -3},
                              640,
                              480,
                              {{97.8930588f, 130.223099f}, {156.590546f, 130.223099f}, {128.734009f, 234.684708f}},
                              {{585.193848f, 438.360596f}, {632.329163f, 440.830841f}, {605.563599f, 479.0f}}}));

TEST(FaceImage, IsAlwaysOfTheNetworksSizeAndFilledButForOneEdge) {
  TIppiImage image(imGray8);
  fill(image, 900, 900, 200);
  for (int w = 20; w < 240; w += 3) {
    TFaceImage faceImage;
    ASSERT_EQ(faceImage.Cut(image, {450, 450, w, 0, 0}), VIZLE_OK);
    ASSERT_EQ(faceImage.Face.Width, 256);
    ASSERT_EQ(faceImage.Face.Height, 256);
    for (int y = 1; y < 256; y += 3) {
      for (int x = 0; x < 255; x += 2) ASSERT_EQ(facePixel(faceImage.Face, x, y), 200) << x << ", " << y << " of " << w;
    }
    for (int k = 0; k < 256; ++k) {
      const int edges[] = {facePixel(faceImage.Face, k, 0), facePixel(faceImage.Face, 255, k)};
      for (int value : edges) ASSERT_TRUE(value == 0 || value == 200) << w;
    }
  }
}

// The mean face, wherever and however large and tilted it is, comes to lie as the networks know it.
TEST(FaceImage, TheFaceIsUprightAndInItsPlace) {
  std::mt19937 random(2);
  const auto pick = [&](int low, int high) { return std::uniform_int_distribution<int>(low, high)(random); };
  TIppiImage image(imGray8);
  image.AllocNew(1200, 1000);
  for (int i = 0; i < 200; ++i) {
    const int w = pick(60, 300);
    const TFacePosition face = {pick(w, 1200 - w), pick(w, 1000 - w), w, 0, pick(-20, 20) * 1.0};
    TFaceImage faceImage;
    ASSERT_EQ(faceImage.Cut(image, face), VIZLE_OK);
    const TGrid& grid = faceImage.Expected;
    ASSERT_NEAR(grid.Nodes[0].y, grid.Nodes[1].y, 0.02);
    TGrid back = grid;
    faceImage.BackToImage(back);
    const double turn = -face.angle * std::acos(-1.0) / 180;
    for (std::size_t n = 0; n < 40; ++n) {
      ASSERT_NEAR(grid.Nodes[n].x, MeanGrid40.Nodes[n].x, 5);
      ASSERT_NEAR(grid.Nodes[n].y, MeanGrid40.Nodes[n].y, 5);
      const double dx = (static_cast<double>(MeanGrid40.Nodes[n].x) - 128) * w / 150;
      const double dy = (static_cast<double>(MeanGrid40.Nodes[n].y) - 127) * w / 150;
      const double x = face.xc + std::cos(turn) * dx - std::sin(turn) * dy;
      const double y = face.yc - 0.1 * w + std::sin(turn) * dx + std::cos(turn) * dy;
      ASSERT_NEAR(back.Nodes[n].x, std::clamp(x, 0.0, 1199.0), 2 + 0.03 * w) << n << " of w " << w;
      ASSERT_NEAR(back.Nodes[n].y, std::clamp(y, 0.0, 999.0), 2 + 0.03 * w) << n << " of w " << w;
    }
  }
}

// Draws a spot and looks where it comes out.
TEST(FaceImage, PointInFaceTellsWhereThePixelsGo) {
  std::mt19937 random(4);
  const auto pick = [&](int low, int high) { return std::uniform_int_distribution<int>(low, high)(random); };
  for (int i = 0; i < 60; ++i) {
    TIppiImage image(imGray8);
    image.AllocNew(500, 400);
    const int w = pick(30, 250);
    const TFacePosition face = {pick(150, 350), pick(150, 250), w, 0, pick(-20, 20) * 1.0};
    const double xSpot = face.xc + pick(-35, 35) * 0.01 * w, ySpot = face.yc + pick(-35, 35) * 0.01 * w;
    for (int y = 0; y < 400; ++y) {
      for (int x = 0; x < 500; ++x) {
        const double d = std::hypot(x - xSpot, y - ySpot) * 40 / w;
        facePixel(image, x, y) = static_cast<unsigned char>(std::lrint(250 * std::exp(-d * d / 2)));
      }
    }
    TFaceImage faceImage;
    ASSERT_EQ(faceImage.Cut(image, face), VIZLE_OK);
    double sum = 0, xSum = 0, ySum = 0;
    for (int y = 0; y < 256; ++y) {
      for (int x = 0; x < 256; ++x) {
        const double weight = facePixel(faceImage.Face, x, y) > 20 ? facePixel(faceImage.Face, x, y) : 0;
        sum += weight;
        xSum += weight * x;
        ySum += weight * y;
      }
    }
    ASSERT_GT(sum, 1000);
    const TSPoint told = faceImage.PointInFace({static_cast<float>(xSpot), static_cast<float>(ySpot)});
    ASSERT_NEAR(xSum / sum, told.x, 0.2) << "w " << w << " angle " << face.angle;
    ASSERT_NEAR(ySum / sum, told.y, 0.2) << "w " << w << " angle " << face.angle;
  }
}

TEST(FaceImage, CornersAreBlackBeyondTheImageAndNodesStayInside) {
  TIppiImage image(imGray8);
  fill(image, 120, 90, 180);
  for (const auto& [xc, yc] : {std::pair(0, 0), std::pair(119, 0), std::pair(0, 89), std::pair(119, 89),
                               std::pair(-300, -300), std::pair(400, 50)}) {
    TFaceImage faceImage;
    ASSERT_EQ(faceImage.Cut(image, {xc, yc, 80, 0, 10}), VIZLE_OK);
    EXPECT_EQ(facePixel(faceImage.Face, xc < 60 ? 2 : 252, yc < 45 ? 2 : 252), 0) << xc << ", " << yc;
    TGrid grid = faceImage.Expected;
    faceImage.BackToImage(grid);
    for (const TSPoint& node : grid.Nodes) {
      EXPECT_TRUE(node.x >= 0 && node.x <= 119 && node.y >= 0 && node.y <= 89) << node.x << ", " << node.y;
    }
  }
  EXPECT_EQ(facePixel(image, 60, 45), 180);
}

TEST(FaceImage, AFaceWithoutWidthIsOnePixelBlownUp) {
  TIppiImage image(imGray8);
  fill(image, 30, 30, 10);
  facePixel(image, 12, 17) = 90;
  TFaceImage faceImage;
  ASSERT_EQ(faceImage.Cut(image, {12, 17, 0, 0, 5}), VIZLE_OK);
  ASSERT_EQ(faceImage.Face.Width, 256);
  EXPECT_EQ(facePixel(faceImage.Face, 128, 128), 90);
  TGrid grid = faceImage.Expected;
  faceImage.BackToImage(grid);
  EXPECT_EQ(grid.Nodes[0].x, 12);
  EXPECT_EQ(grid.Nodes[0].y, 17);
}

TEST(FaceImage, PositionsThatNoImageCanShowAreRefused) {
  constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  TIppiImage image(imGray8);
  fill(image, 100, 100, 10);
  const TFacePosition bad[] = {
      {50, 50, -1, 0, 0},           {50, 50, INT_MIN, 0, 0},           {50, 50, 1000000, 0, 0},
      {50, 50, INT_MAX, 0, 0},      {1000000000, 50, 40, 0, 0},        {50, -1000000000, 40, 0, 0},
      {INT_MAX, INT_MIN, 40, 0, 0}, {INT_MIN, INT_MIN, INT_MAX, 0, 0}, {50, 50, 40, 0, kNaN},
      {50, 50, 40, 0, kInfinity},   {50, 50, 40, 0, -kInfinity},       {50, 50, 40, 0, 1e300}};
  for (const TFacePosition& face : bad) {
    TFaceImage faceImage;
    EXPECT_EQ(faceImage.Cut(image, face), VIZLE_INVALID_ARGUMENT)
        << face.xc << ", " << face.yc << ", " << face.w << ", " << face.angle;
  }
  // Turns far beyond a whole one are numbers like others.
  TFaceImage faceImage;
  EXPECT_EQ(faceImage.Cut(image, {50, 50, 40, 0, 1e30}), VIZLE_OK);
  EXPECT_EQ(faceImage.Cut(image, {50, 50, 40, 0, -3600}), VIZLE_OK);
}

}  // namespace
