#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "training/window_samples.h"

namespace {

constexpr FaceJitter kNoJitter = {0.0, 1e-6, 1.0, 0.0, 0.0, 0.0, 0.0};

// A gray picture with two dark eyes and a mouth, its face turned clockwise by `roll` degrees about the centre.
TrainingPicture drawnFace(double roll) {
  TrainingPicture picture;
  picture.gray = std::make_unique<TIppiImage>(imGray8);
  picture.gray->AllocNew(400, 400);
  picture.face = {200.0, 190.0, 120.0, roll};
  const double a = roll * 3.14159265358979 / 180.0;
  for (int y = 0; y < 400; ++y) {
    for (int x = 0; x < 400; ++x) {
      // Back into the face's own frame, in widths from the square's top left.
      const double dx = x + 0.5 - picture.face.xc;
      const double dy = y + 0.5 - picture.face.yc;
      const double u = (dx * std::cos(a) + dy * std::sin(a)) / picture.face.w + 0.5;
      const double v = (-dx * std::sin(a) + dy * std::cos(a)) / picture.face.w + 0.5;
      const bool eye = std::hypot(std::abs(u - 0.49) - 0.197, v - 0.413) < 0.07;
      const bool mouth = std::abs(u - 0.49) < 0.15 && std::abs(v - 0.8) < 0.04;
      picture.gray->Pixels[(399 - y) * picture.gray->Step + x] = eye || mouth ? 30 : 200;
    }
  }
  return picture;
}

// Centre of the dark pixels in the upper part of the window, in pixels.
void darkCentre(const Window& window, double& x, double& y) {
  const auto [darkest, brightest] = std::minmax_element(window.begin(), window.end());
  const int middle = (*darkest + *brightest) / 2;
  int count = 0;
  x = y = 0;
  for (int row = 0; row < 12; ++row) {
    for (int column = 0; column < kWindowSide; ++column) {
      if (window[static_cast<std::size_t>(row * kWindowSide + column)] > middle) continue;
      ++count;
      x += column + 0.5;
      y += row + 0.5;
    }
  }
  x /= count;
  y /= count;
}

class FaceWindow : public testing::TestWithParam<double> {};

TEST_P(FaceWindow, PutsTheEyesWhereTheGeometrySays) {
  TrainingPicture picture = drawnFace(GetParam());
  std::mt19937 random(7);
  double meanX = 0;
  double meanY = 0;
  constexpr int kWindows = 300;
  for (int k = 0; k < kWindows; ++k) {
    Window window;
    ASSERT_TRUE(makeFaceWindow(picture, kNoJitter, random, window));
    double x, y;
    darkCentre(window, x, y);
    meanX += x / kWindows;
    meanY += y / kWindows;
  }
  // Half of the windows are mirrored, so the eyes' middle (0.49) comes out at 0.5 on average. Windows stand at whole
  // pixels, half a pixel off at most.
  EXPECT_NEAR(meanX, 0.5 * kWindowSide, 0.3);
  EXPECT_NEAR(meanY, 0.413 * kWindowSide, 0.45);
}

INSTANTIATE_TEST_SUITE_P(Rolls, FaceWindow, testing::Values(0.0, 12.0, -20.0));

}  // namespace
