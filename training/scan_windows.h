// The library's scan, seen window by window: the same resizing, integrals and stages as DetectFaceRaw, but
// handing out the pixels of the windows that pass.
#pragma once

#include <cstddef>
#include <functional>
#include <vector>

#include "detect/TIppiFaceDetector.h"
#include "image/TIppiImage.h"
#include "primitives/haar_scan.h"
#include "training/window_samples.h"

// A window that passed: its square in `image`, pixels, rows from the top.
struct ScannedWindow {
  double xc, yc, w;
  const TIppiImage* scaled;
  int x, row;  // lower left corner in stored rows of `scaled`
};

class WindowScanner {
 public:
  explicit WindowScanner(const TIppiFaceDetector& detector) : detector_(detector) {}

  // Calls `visit` for every window of `image` that passes all stages, at the scales scale, scale / 1.18, ...
  // down to windows as high as the image.
  void scan(TIppiImage& image, float scale, const std::function<void(const ScannedWindow&)>& visit);

  // Whether one window passes the stages from `firstStage` on.
  bool passes(const Window& window, int firstStage);

 private:
  const TIppiFaceDetector& detector_;
  std::vector<HaarCascade::Position> found_;
};
