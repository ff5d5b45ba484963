#include "training/eyes/eye_weights.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <random>

#include "api/vizl_api.h"
#include "eyes/eye_score.h"
#include "eyes/eye_window.h"
#include "image/TIppiImage.h"
#include "tests/eyes/window_pictures.h"
#include "training/eyes/eye_solver.h"

namespace {

constexpr int kPlaces = 32 * 32;

// Noise, with little contrast in places so that some S1 responses are not 0, and a dark spot as the eye.
EyeFrame randomFrame(std::mt19937& random) {
  EyeFrame frame;
  std::normal_distribution<double> noise(0, 5);
  const double eyeX = 39 + static_cast<double>(random() % 9), eyeY = 30 + static_cast<double>(random() % 9);
  frame.eyes = {{{eyeX, eyeY}, {127 - eyeX, eyeY}}};
  for (int y = 0; y < 128; ++y) {
    for (int x = 0; x < 128; ++x) {
      const double left = std::hypot(x - eyeX, y - eyeY), right = std::hypot(127 - x - eyeX, y - eyeY);
      const double value = 150 - 90 * std::exp(-std::min(left, right) / 3) + (y < 24 ? 0 : noise(random));
      frame.pixels[static_cast<std::size_t>(x + 128 * y)] = static_cast<std::uint8_t>(std::clamp(value, 0.0, 255.0));
    }
  }
  return frame;
}

EyeWeights randomWeights(std::mt19937& random) {
  EyeWeights weights;
  for (std::size_t i = 0; i < EyeWeights::kCount; ++i) {
    if (!EyeWeights::isFixed(i)) weights.values[i] = std::uniform_real_distribution<float>(-0.1f, 0.1f)(random);
  }
  return weights;
}

// All scores of a window may differ by one constant between the two forms.
TEST(EyeWeightsForm, TheLibraryScoresAsTheTrainerDoes) {
  std::mt19937 random(1);
  for (int eye = 0; eye < 2; ++eye) {
    const EyeFrame frame = randomFrame(random);
    const EyeWeights weights = randomWeights(random);
    const EyeSample sample = makeEyeSample(frame, eye, testPrototype());
    EXPECT_GT(sample.s1.size(), 20u);
    float trained[kPlaces] = {}, used[kPlaces] = {};
    scoreSample(weights, sample, trained);

    TIppiImage image;
    frame.toImage(image);
    TEyeWindow window(testPrototype());
    PrepareEyeWindow(&image, eye == 1, window);
    ScoreEyeWindow(window, *std::make_unique<TEyeRows>(weights.toModel()), used);
    const float constant = used[5] - trained[5];
    for (int x = 2; x <= 29; ++x) {
      for (int y = 0; y < 32; ++y)
        EXPECT_NEAR(used[x + 32 * y] - trained[x + 32 * y], constant, 1e-4f) << x << ' ' << y;
    }
  }
}

TEST(EyeSolverStep, LearnsWhereTheSpotsAre) {
  std::mt19937 random(3);
  std::vector<EyeSample> samples;
  for (int i = 0; i < 12; ++i) {
    const EyeFrame frame = randomFrame(random);
    for (int eye = 0; eye < 2; ++eye) samples.push_back(makeEyeSample(frame, eye, testPrototype()));
  }
  SolverOptions options;
  options.epochs = 6;
  options.batch = 4;
  EyeSolver solver(options);
  const double first = solver.runEpoch(samples);
  double last = first;
  for (int i = 1; i < options.epochs; ++i) last = solver.runEpoch(samples);
  EXPECT_LT(last, 0.6 * first);
  for (std::size_t i = 0; i < EyeWeights::kCount; ++i) {
    ASSERT_TRUE(!EyeWeights::isFixed(i) || solver.weights().values[i] == 0) << i;
  }
}

TEST(EyeFrames, TheCropFollowsTheEyes) {
  TIppiImage gray(imGray8);
  gray.AllocNew(400, 300);
  std::fill_n(gray.Pixels, gray.SizeBytes, static_cast<unsigned char>(200));
  // A black block of 5 by 5 pixels whose middle is the eye.
  for (int y = 98; y <= 102; ++y)
    std::fill_n(gray.Pixels + (299 - y) * gray.Step + 168, 5, static_cast<unsigned char>(0));
  const EyeFrame frame = cutEyeFrame(gray, {{{170, 100}, {230, 100}}}, {200, 118, 150, 0, 0});
  double sum = 0, x = 0, y = 0;
  for (int row = 0; row < 128; ++row) {
    for (int column = 0; column < 128; ++column) {
      const double dark = 200 - frame.pixels[static_cast<std::size_t>(column + 128 * row)];
      sum += dark;
      x += dark * column;
      y += dark * row;
    }
  }
  EXPECT_NEAR(x / sum, frame.eyes[0].x, 0.05);
  EXPECT_NEAR(y / sum, frame.eyes[0].y - 0.4, 0.05) << "what flooring the crop's side drops at its top";
}

}  // namespace
