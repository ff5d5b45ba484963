// The scan of one image at a falling series of scales.
#include <algorithm>
#include <cmath>

#include "detect/TIppiFaceDetector.h"
#include "image/TIppiImage.h"
#include "primitives/haar_scan.h"

namespace {

constexpr float kScaleStep = 1.18f;
// A scaled image up to this width is scanned with a replicated border of a third of its size, so that
// windows may stand partly outside the picture.
constexpr float kPaddedWidth = 50.0f;
// Far below any sum, so that sums up to 2^25 stay exact integers in single precision.
constexpr float kSumOffset = -16777216.0f;

int roundToEven(float value) { return static_cast<int>(std::lrint(value)); }

// One scale of the series: the image to scan and how its windows map back.
struct ScaledImage {
  TIppiImage scaled;
  TIppiImage padded;
  TIppiImage* scan = nullptr;
  float scale = 0;
  int borderX = 0;
  int borderY = 0;

  void Make(TIppiImage& image, float s, float width, float height) {
    scale = s;
    image.Resize(scaled, s);
    scan = &scaled;
    borderX = 0;
    borderY = 0;
    if (width <= kPaddedWidth) Pad(width, height);
  }

 private:
  void Pad(float width, float height) {
    borderX = roundToEven(width / 3.0f);
    borderY = roundToEven(height / 3.0f);
    padded.AllocNew(scaled.Width + 2 * borderX, scaled.Height + 2 * borderY);
    ippiCopyReplicateBorder_8u_C1R(scaled.Pixels, scaled.Step, {scaled.Width, scaled.Height}, padded.Pixels,
                                   padded.Step, {padded.Width, padded.Height}, borderY, borderX);
    scan = &padded;
  }
};

// The rectangle of the deviation: the window without its margin.
IppiRect deviationRect(const TIppiFaceDetector& detector) {
  const int margin = roundToEven(detector.WindowMargin);
  const int margins = roundToEven(2.0f * detector.WindowMargin);
  return {margin, margin, detector.WindowWidth - margins, detector.WindowHeight - margins};
}

// A cascade may end before its window does; the rectangle of the deviation has to fit as well.
IppiSize scanWindow(const TIppiFaceDetector& detector) {
  const IppiRect rect = deviationRect(detector);
  return {std::max(detector.ClassifierWidth, rect.x + rect.width),
          std::max(detector.ClassifierHeight, rect.y + rect.height)};
}

// Stored rows count from the bottom of the picture, rectangles from its top.
TRectangle toPicture(const TIppiFaceDetector& detector, const ScaledImage& at, HaarCascade::Position hit,
                     int pictureHeight) {
  const auto unscaled = [&at](int c) { return roundToEven(static_cast<float>(c) / at.scale); };
  const int u = hit.x - at.borderX;
  const int v = hit.y - at.borderY;
  return {unscaled(u), pictureHeight - unscaled(v + detector.WindowHeight), unscaled(u + detector.WindowWidth),
          pictureHeight - unscaled(v)};
}

}  // namespace

void TIppiFaceDetector::DetectFaceRaw(TIppiImage& image, std::vector<TRectangle>& rects, float scale) {
  rects.clear();
  if (image.Pixels == nullptr) return;
  HaarCascade cascade(StageClassifiers, StageThreshold, StageCount);
  HaarScan scan(cascade, scanWindow(*this), deviationRect(*this), kSumOffset);
  ScaledImage at;
  std::vector<HaarCascade::Position> hits;
  for (float s = scale;; s /= kScaleStep) {
    const float width = static_cast<float>(image.Width) * s;
    const float height = static_cast<float>(image.Height) * s;
    if (!(width > WindowWidth * 0.7 && height > WindowHeight * 0.7)) break;
    at.Make(image, s, width, height);
    scan.Run(at.scan->Pixels, at.scan->Step, {at.scan->Width, at.scan->Height}, hits);
    // The hits of one scale come column by column.
    std::sort(hits.begin(), hits.end(), [](const HaarCascade::Position& a, const HaarCascade::Position& b) {
      return a.x != b.x ? a.x < b.x : a.y < b.y;
    });
    for (const HaarCascade::Position& hit : hits) rects.push_back(toPicture(*this, at, hit, image.Height));
  }
}
