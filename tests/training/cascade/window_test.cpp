#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "training/negative_miner.h"
#include "training/scan_windows.h"
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

// A cascade of one classifier that every window with enough contrast passes.
std::vector<unsigned char> openCascade() {
  return cascadeToStream({{-1.0f, {{{{0, 0, 2, 1, -1.0f}, {1, 0, 1, 1, 2.0f}}, 0.0f, 0.0f, 0.0f}}}});
}

TEST(NegativeMiner, StaysOffTheLabelledFaceAndDoesNotDependOnThreads) {
  std::vector<TrainingPicture> portraits;
  std::vector<TrainingPicture> backgrounds;
  portraits.push_back(drawnFace(0.0));
  backgrounds.push_back(drawnFace(0.0));
  const std::vector<unsigned char> stream = openCascade();
  const TIppiFaceDetector detector(stream.data(), static_cast<unsigned>(stream.size()));
  MiningPlan plan;
  plan.wanted = 500;
  plan.seed = 3;
  std::size_t scans = 0;
  plan.threads = 1;
  const std::vector<Window> serial = mineNegatives(detector, backgrounds, portraits, plan, scans);
  plan.threads = 3;
  const std::vector<Window> parallel = mineNegatives(detector, backgrounds, portraits, plan, scans);
  EXPECT_EQ(serial.size(), plan.wanted);
  EXPECT_EQ(serial, parallel);
}

TEST(WindowScanner, VisitsWhatTheDetectorReports) {
  TrainingPicture picture = drawnFace(0.0);
  // Dark band over bright band, as the eyes over the cheeks; flat ground fails. The second classifier decides nothing,
  // but makes the cascade as large as the window.
  const WeakClassifier band{{{3, 7, 14, 4, -1.0f}, {3, 7, 14, 2, 2.0f}}, -0.08f, 1.0f, 0.0f};
  const WeakClassifier corner{{{16, 16, 4, 4, -1.0f}, {16, 18, 4, 2, 2.0f}}, 0.0f, 0.0f, 0.0f};
  const std::vector<unsigned char> stream = cascadeToStream({{0.5f, {band, corner}}});
  TIppiFaceDetector detector(stream.data(), static_cast<unsigned>(stream.size()));
  std::vector<TRectangle> rects;
  detector.DetectFaceRaw(*picture.gray, rects, 1.0f);
  // Larger windows are scanned with a border by the detector alone.
  constexpr double kLargest = 150.0;
  std::vector<double> places;
  for (const TRectangle& r : rects) {
    if (r.x2 - r.x1 < kLargest) places.push_back(0.5 * (r.x1 + r.x2));
  }
  std::vector<double> visited;
  std::vector<Window> windows;
  WindowScanner scanner(detector);
  scanner.scan(*picture.gray, 1.0f, [&](const ScannedWindow& found) {
    if (found.w >= kLargest) return;
    visited.push_back(found.xc);
    windows.push_back(windowAt(*found.scaled, found.x, found.row));
  });
  ASSERT_FALSE(visited.empty());
  ASSERT_EQ(visited.size(), places.size());
  // Alone, a window has other roundings in its sums, which can tip those at the threshold.
  const auto passing =
      std::count_if(windows.begin(), windows.end(), [&](const Window& w) { return scanner.passes(w, 0); });
  EXPECT_GT(static_cast<double>(passing), 0.98 * static_cast<double>(windows.size()));
  std::sort(places.begin(), places.end());
  std::sort(visited.begin(), visited.end());
  for (std::size_t k = 0; k < places.size(); ++k) ASSERT_NEAR(visited[k], places[k], 1.0);
}

}  // namespace
