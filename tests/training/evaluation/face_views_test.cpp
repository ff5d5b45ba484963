#include "training/evaluation/face_views.h"

#include <gtest/gtest.h>

#include <cmath>

#include "features/mean_grid.h"

namespace evaluation {
namespace {

// The mean face somewhere in a dark picture, with a bright square of 7 pixels under each of a few nodes.
constexpr std::size_t kMarked[] = {0, 1, 3, 29};

void makeView(FaceView& view) {
  view.picture.AllocNew(400, 330);
  for (std::size_t n = 0; n < 40; ++n) {
    view.points[n] = {MeanGrid40.Nodes[n].x + 70.0, MeanGrid40.Nodes[n].y + 40.0};
  }
  for (const std::size_t n : kMarked) {
    const int x = static_cast<int>(view.points[n].x), y = static_cast<int>(view.points[n].y);
    view.points[n] = {x + 0.5, y + 0.5};
    for (int row = y - 3; row <= y + 3; ++row) {
      unsigned char* const pixels = view.picture.Pixels + (view.picture.Height - 1 - row) * view.picture.Step;
      for (int column = x - 3; column <= x + 3; ++column) pixels[column] = 200;
    }
  }
}

// The centre of what is bright within 12 pixels of a point; pixel i spans i .. i + 1.
LabelledPoint brightCentre(TIppiImage& image, const LabelledPoint& about) {
  double sum = 0, x = 0, y = 0;
  for (int row = 0; row < image.Height; ++row) {
    for (int column = 0; column < image.Width; ++column) {
      if (std::hypot(column + 0.5 - about.x, row + 0.5 - about.y) > 12) continue;
      const double value = image.Pixels[(image.Height - 1 - row) * image.Step + column];
      sum += value;
      x += value * (column + 0.5);
      y += value * (row + 0.5);
    }
  }
  return {x / sum, y / sum};
}

void expectLabelsOnMarks(FaceView& view, const char* what) {
  for (const std::size_t n : kMarked) {
    const LabelledPoint centre = brightCentre(view.picture, view.points[n]);
    EXPECT_NEAR(centre.x, view.points[n].x, 0.15) << what << ' ' << n;
    EXPECT_NEAR(centre.y, view.points[n].y, 0.15) << what << ' ' << n;
  }
}

TEST(FaceViews, TurningTakesTheLabelsAlong) {
  for (const double degrees : {-20.0, -3.5, 12.0, 22.0}) {
    FaceView view, turned;
    makeView(view);
    turnView(view, degrees, turned);
    expectLabelsOnMarks(turned, "turned");
    EXPECT_NEAR(squareOf(turned.points).roll - squareOf(view.points).roll, degrees, 1e-9);
    EXPECT_NEAR(squareOf(turned.points).xc, squareOf(view.points).xc, 1e-9);
    EXPECT_NEAR(squareOf(turned.points).yc, squareOf(view.points).yc, 1e-9);
  }
}

TEST(MirroredNodes, PairTheTwoHalvesOfTheMeanFace) {
  double axis = 0;
  for (const TSPoint& node : MeanGrid40.Nodes) axis += static_cast<double>(node.x) / 40;
  for (std::size_t n = 0; n < 40; ++n) {
    EXPECT_EQ(kMirroredNodes[kMirroredNodes[n]], n);
    const TSPoint node = MeanGrid40.Nodes[n], other = MeanGrid40.Nodes[kMirroredNodes[n]];
    EXPECT_LT(std::hypot(2 * axis - static_cast<double>(other.x) - static_cast<double>(node.x),
                         static_cast<double>(other.y - node.y)),
              4)
        << n;
  }
}

}  // namespace
}  // namespace evaluation
