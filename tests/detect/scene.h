// Pictures and settings for the tests of the detector.
#pragma once

#include <memory>
#include <random>

#include "detect/TIppiFaceDetector.h"
#include "image/TIppiImage.h"
#include "image/params.h"
#include "tests/detect/cascade_builder.h"
#include "tests/detect/reference.h"

inline std::unique_ptr<TIppiFaceDetector> makeDetector(const TestCascade& cascade) {
  const std::vector<unsigned char> stream = cascade.Stream();
  return std::make_unique<TIppiFaceDetector>(stream.data(), static_cast<unsigned>(stream.size()));
}

// A context of its own for the time of a test.
class TestContext {
 public:
  explicit TestContext(const reference::Settings& settings) {
    CreateContext(&id_);
    SetFaceDetectionParameters(settings.rotations, settings.angle, settings.width, id_);
    SetFaceDetectionThreshold(settings.thresholds.threshold1, settings.thresholds.threshold2, id_);
  }
  ~TestContext() { FreeContext(id_); }
  TestContext(const TestContext&) = delete;
  TestContext& operator=(const TestContext&) = delete;
  operator int() const { return id_; }

 private:
  int id_ = 0;
};

// Smooth random blobs: neighbouring windows look alike, as in photos.
inline void fillBlobs(TIppiImage& image, int width, int height, unsigned seed) {
  std::mt19937 random(seed);
  TIppiImage small;
  small.AllocNew(width / 6 + 3, height / 6 + 3);
  for (int y = 0; y < small.Height; y++) {
    for (int x = 0; x < small.Width; x++) small.Pixels[y * small.Step + x] = static_cast<unsigned char>(random());
  }
  TIppiImage large;
  small.Resize(large, 6.5);
  large.CopyTo(image, 0, 0, width - 1, height - 1);
}

// A bright square on dark noise; x, y from the top.
inline void drawSquare(TIppiImage& image, int left, int top, int side) {
  for (int y = top; y < top + side; y++) {
    for (int x = left; x < left + side; x++) {
      if (x < 0 || y < 0 || x >= image.Width || y >= image.Height) continue;
      image.Pixels[(image.Height - 1 - y) * image.Step + x] = 210;
    }
  }
}

inline void fillDark(TIppiImage& image, int width, int height, unsigned seed) {
  std::mt19937 random(seed);
  image.AllocNew(width, height);
  for (int i = 0; i < image.SizeBytes; i++) image.Pixels[i] = static_cast<unsigned char>(30 + random() % 8);
}
