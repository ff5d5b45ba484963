#include "training/features/patch_frame.h"

#include <gtest/gtest.h>

#include <random>

#include "features/TPatchImage.h"

namespace {

// Noise, with a flat part and a part of few gray levels.
FeatureFrame noiseFrame() {
  FeatureFrame frame{};
  std::mt19937 random(3);
  for (std::size_t i = 0; i < frame.pixels.size(); ++i) {
    const std::size_t x = i % kFrameSide, y = i / kFrameSide;
    frame.pixels[i] = x < 80 && y < 80 ? 77 : static_cast<std::uint8_t>(x < 160 ? random() % 256 : random() % 3 + 100);
  }
  return frame;
}

// The search's own way: pixels from a frame with black around it, ranges by the documented function.
TEST(PatchFrame, ReadsWhatTheSearchReads) {
  const FeatureFrame frame = noiseFrame();
  const PatchFrame prepared(frame);
  TIppiImage image;
  toImage(frame, image);
  TPatchImage patches;
  patches.Assign(image);
  for (int y = 0; y < kFrameSide; y += y < 4 || y > 250 ? 1 : 21) {
    for (int x = 0; x < kFrameSide; x += x < 4 || x > 250 ? 1 : 13) {
      unsigned char pixels[kPatchPixels];
      const int left = x - kPatchSide / 2, top = y - kPatchSide / 2;
      for (int row = 0; row < kPatchSide; ++row) {
        std::copy_n(patches.Patch(left, top) + row * TPatchImage::kStep, kPatchSide, pixels + row * kPatchSide);
      }
      float expected[kPatchPixels], found[kPatchPixels];
      NormalisePatch(pixels, FindPatchRange(pixels), expected);
      prepared.read(x, y, found);
      for (int i = 0; i < kPatchPixels; ++i) ASSERT_NEAR(found[i], expected[i], 1e-6) << x << ' ' << y << ' ' << i;
    }
  }
}

}  // namespace
