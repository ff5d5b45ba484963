#include "training/features/feature_frame.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <random>
#include <stdexcept>

#include "features/face_image.h"
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

// What a search that finds the labels would report. A resize leaves out what does not fill a whole pixel, at the top,
// and the first one reduces the face to 88 pixels.
TEST_P(FrameLabels, ComeBackToTheImageWithinAPixel) {
  const double pixel = std::max(1.0, GetParam() / 88);
  evaluation::FaceView view;
  makeView(view, GetParam(), 2);
  const TFacePosition place = placeOf(view, 0);
  FeatureFrame frame{};
  ASSERT_TRUE(cutFeatureFrame(view, place, frame));
  TFaceImage face;
  ASSERT_EQ(face.Cut(view.picture, place), VIZLE_OK);
  TGrid grid;
  for (std::size_t n = 0; n < 40; ++n) grid.AddNode({frame.points[2 * n], frame.points[2 * n + 1]});
  face.BackToImage(grid);
  for (std::size_t n = 0; n < 40; ++n) {
    if (n == 5 || n == 8 || n == 9) continue;  // the forehead is not where its labels have it
    EXPECT_NEAR(grid.Nodes[n].x, view.points[n].x, pixel) << n;
    EXPECT_NEAR(grid.Nodes[n].y, view.points[n].y, pixel) << n;
  }
}

INSTANTIATE_TEST_SUITE_P(Widths, FrameLabels, testing::Values(70.0, 128.0, 150.0, 201.0));

TEST(FeatureFrames, ComeBackFromAFile) {
  const auto file = std::filesystem::path(testing::TempDir()) / "feature_frames.bin";
  std::vector<FeatureFrame> frames(2);
  frames[1].points[79] = 12.5f;
  frames[1].kind = FrameKind::Reduced;
  frames[1].choice = true;
  frames[1].pixels[65535] = 201;
  writeFeatureFrames(file, frames);
  const auto again = readFeatureFrames(file);
  ASSERT_EQ(again.size(), 2u);
  EXPECT_EQ(again[1].points[79], 12.5f);
  EXPECT_EQ(again[1].kind, FrameKind::Reduced);
  EXPECT_TRUE(again[1].choice);
  EXPECT_EQ(again[1].pixels[65535], 201);

  std::ofstream(file, std::ios::app) << 'x';
  EXPECT_THROW(readFeatureFrames(file), std::runtime_error);
  std::filesystem::remove(file);
  EXPECT_THROW(readFeatureFrames(file), std::runtime_error);
}

TEST(JitteredPlace, StaysWithinItsLimits) {
  const FaceSquare square = {1000, 700, 400, 8};
  const PlaceJitter jitter;
  std::mt19937 random(5);
  double shifts = 0, widths = 0, angles = 0;
  constexpr int kCount = 4000;
  for (int i = 0; i < kCount; ++i) {
    const TFacePosition place = jitteredPlace(square, jitter, random);
    EXPECT_LE(std::abs(place.xc - square.xc), 0.08 * square.w + 0.5);
    EXPECT_LE(std::abs(place.yc - square.yc), 0.08 * square.w + 0.5);
    EXPECT_LE(std::abs(place.w / square.w - jitter.width), 0.12 + 0.5 / square.w);
    EXPECT_LE(std::abs(place.angle + square.roll), 7);
    shifts += place.xc - square.xc;
    widths += place.w;
    angles += place.angle;
  }
  // Four standard errors.
  EXPECT_NEAR(shifts / kCount, 0, 0.8);
  EXPECT_NEAR(widths / kCount, jitter.width * square.w, 1.3);
  EXPECT_NEAR(angles / kCount, -square.roll, 0.2);
}

}  // namespace
