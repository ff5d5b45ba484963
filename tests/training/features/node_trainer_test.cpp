#include "training/features/node_trainer.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

constexpr int kFalseBar = 60;  // how far below the bar something like it lies, pixels

void drawBar(FeatureFrame& frame, int x, int y, int height) {
  for (int row = y - height / 2; row < y + height / 2; ++row) {
    for (int column = x; column < x + 60; ++column) {
      frame.pixels[static_cast<std::size_t>(row * kFrameSide + column)] = 220;
    }
  }
}

// Noise with the end of a bright bar at all nodes, and a bar of half its height.
FeatureFrame barFrame(unsigned seed) {
  std::mt19937 random(seed);
  FeatureFrame frame{};
  for (std::uint8_t& pixel : frame.pixels) pixel = static_cast<std::uint8_t>(90 + random() % 20);
  const int x = 70 + static_cast<int>(random() % 110), y = 90 + static_cast<int>(random() % 70);
  drawBar(frame, x, y, 12);
  drawBar(frame, x, y + kFalseBar, 6);
  for (std::size_t n = 0; n < 40; ++n) {
    frame.points[2 * n] = static_cast<float>(x);
    frame.points[2 * n + 1] = static_cast<float>(y);
  }
  return frame;
}

TrainingSet barSet(std::size_t count) {
  TrainingSet set;
  for (unsigned i = 0; i < count; ++i) set.frames.emplace_back(barFrame(i));
  return set;
}

// The place within 10 pixels of the label where the network answers best, less the label.
LabelledPoint bestOffset(const PatchFrame& frame, const NodeNetwork& network) {
  LabelledPoint best{};
  float lowest = 1;
  const int x = static_cast<int>(frame.points[0]), y = static_cast<int>(frame.points[1]);
  for (int dy = -10; dy <= 10; ++dy) {
    for (int dx = -10; dx <= 10; ++dx) {
      alignas(64) float inputs[kPatchPixels];
      float hidden[kHiddenNeurons];
      frame.read(x + dx, y + dy, inputs);
      const float value = evaluateNetwork(network, inputs, hidden);
      if (value >= lowest) continue;
      lowest = value;
      best = {dx + 0.5, dy + 0.5};
    }
  }
  return best;
}

TrainerOptions quickOptions() {
  TrainerOptions options;
  options.epochs = 6;
  options.offsets = 30;
  options.rate = 4e-3;
  return options;
}

LabelledPoint meanBestOffset(const TrainingSet& set) {
  std::vector<NodeNetwork> networks = {randomNetworks(1)[0]};
  trainNodes(set, quickOptions(), networks);
  LabelledPoint sum{};
  for (unsigned i = 0; i < 20; ++i) {
    const LabelledPoint offset = bestOffset(PatchFrame(barFrame(1000 + i)), networks[0]);
    sum.x += offset.x / 20;
    sum.y += offset.y / 20;
  }
  return sum;
}

TEST(NodeTrainer, FindsWhatItWasShown) {
  TrainingSet set = barSet(150);
  const LabelledPoint plain = meanBestOffset(set);
  EXPECT_NEAR(plain.x, 0, 1);
  EXPECT_NEAR(plain.y, 0, 1);
  set.shifts[0] = 4;
  set.shifts[1] = -3;
  const LabelledPoint shifted = meanBestOffset(set);
  EXPECT_NEAR(shifted.x, 4, 1.2);
  EXPECT_NEAR(shifted.y, -3, 1.2);
}

}  // namespace
