#include "training/features/feature_frame.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "features/mean_grid.h"
#include "training/features/frame_collector.h"

namespace {

// The mean face, `w` pixels wide, with a bright square round one node.
void makeView(evaluation::FaceView& view, double w, std::size_t marked) {
  view.picture.AllocNew(500, 460);
  for (std::size_t n = 0; n < 40; ++n) {
    const TSPoint node = MeanGrid40.Nodes[n];
    view.points[n] = {(static_cast<double>(node.x) - 128) * w / 150 + 250,
                      (static_cast<double>(node.y) - 127) * w / 150 + 220};
  }
  LabelledPoint& label = view.points[marked];
  label = {std::floor(label.x) + 0.5, std::floor(label.y) + 0.5};
  const int half = static_cast<int>(w / 40);
  for (int dy = -half; dy <= half; ++dy) {
    for (int dx = -half; dx <= half; ++dx) {
      const int row = view.picture.Height - 1 - (static_cast<int>(label.y) + dy);
      view.picture.Pixels[row * view.picture.Step + static_cast<int>(label.x) + dx] = 255;
    }
  }
}

TFacePosition placeOf(const evaluation::FaceView& view, double angle) {
  const FaceSquare square = evaluation::squareOf(view.points);
  return {static_cast<int>(square.xc), static_cast<int>(square.yc), static_cast<int>(square.w), 0, angle};
}

struct Mark {
  double x = 0, y = 0;
};

Mark brightCentre(const FeatureFrame& frame) {
  Mark mark;
  double sum = 0;
  for (int y = 0; y < kFrameSide; ++y) {
    for (int x = 0; x < kFrameSide; ++x) {
      const double value = frame.pixels[static_cast<std::size_t>(y * kFrameSide + x)];
      sum += value;
      mark.x += value * (x + 0.5);
      mark.y += value * (y + 0.5);
    }
  }
  return {mark.x / sum, mark.y / sum};
}

class FrameLabels : public testing::TestWithParam<double> {};

TEST_P(FrameLabels, LieOnWhatTheyLabel) {
  for (const double angle : {-12.0, 0.0, 5.0}) {
    for (const std::size_t node : {0u, 4u, 13u, 29u}) {
      evaluation::FaceView view;
      makeView(view, GetParam(), node);
      FeatureFrame frame{};
      ASSERT_TRUE(cutFeatureFrame(view, placeOf(view, angle), frame));
      const Mark mark = brightCentre(frame);
      EXPECT_NEAR(frame.points[2 * node], mark.x, 0.6) << angle << ' ' << node;
      EXPECT_NEAR(frame.points[2 * node + 1], mark.y, 0.6) << angle << ' ' << node;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Widths, FrameLabels, testing::Values(70.0, 128.0, 150.0, 201.0));

}  // namespace
