// The scan of one image at a falling series of scales.
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <memory>

#include "detect/TIppiFaceDetector.h"
#include "image/TIppiImage.h"
#include "primitives/haar_cascade.h"

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

// Integrals and deviations of the scan image, kept over all scales. The pitch follows from the width, so
// images of any width fit; it stays that of the widest image so far, since the cascade is laid out for it.
class ScanBuffers {
 public:
  void Fit(int width, int height) {
    pitch_ = std::max(pitch_, width + 1);
    const std::size_t count = static_cast<std::size_t>(pitch_) * (static_cast<std::size_t>(height) + 1);
    if (count <= capacity_) return;
    capacity_ = 0;
    sum.reset(new float[count + HaarCascade::kSlack]);
    norm.reset(new float[count + HaarCascade::kSlack]);
    sqr.reset(new double[count]);
    capacity_ = count;
  }
  int Pitch() const { return pitch_; }

  std::unique_ptr<float[]> sum;
  std::unique_ptr<float[]> norm;
  std::unique_ptr<double[]> sqr;

 private:
  std::size_t capacity_ = 0;
  int pitch_ = 0;
};

class Scan {
 public:
  Scan(const TIppiFaceDetector& detector, int imageHeight, std::vector<TRectangle>& rects)
      : detector_(detector),
        imageHeight_(imageHeight),
        rects_(rects),
        cascade_(detector.StageClassifiers, detector.StageThreshold, detector.StageCount) {
    const int margin = roundToEven(detector.WindowMargin);
    const int margins = roundToEven(2.0f * detector.WindowMargin);
    normRect_ = {margin, margin, detector.WindowWidth - margins, detector.WindowHeight - margins};
  }

  void Run(const ScaledImage& at) {
    const TIppiImage& image = *at.scan;
    // A cascade may end before its window does; the rectangle of the deviation has to fit as well.
    const int windowWidth = std::max(detector_.ClassifierWidth, normRect_.x + normRect_.width);
    const int windowHeight = std::max(detector_.ClassifierHeight, normRect_.y + normRect_.height);
    const IppiSize roi = {image.Width - windowWidth + 1, image.Height - windowHeight + 1};
    if (roi.width <= 0 || roi.height <= 0) return;
    Prepare(image, roi);
    hits_.clear();
    cascade_.Scan(buffers_.sum.get(), buffers_.norm.get(), roi, hits_);
    // The hits of one scale come column by column.
    std::sort(hits_.begin(), hits_.end(), [](const HaarCascade::Position& a, const HaarCascade::Position& b) {
      return a.x != b.x ? a.x < b.x : a.y < b.y;
    });
    for (const HaarCascade::Position& hit : hits_) AddHit(at, hit.x - at.borderX, hit.y - at.borderY);
  }

 private:
  void Prepare(const TIppiImage& image, IppiSize roi) {
    buffers_.Fit(image.Width, image.Height);
    cascade_.SetPitch(buffers_.Pitch());
    const int step = buffers_.Pitch() * 4;
    ippiSqrIntegral_8u32f64f_C1R(image.Pixels, image.Step, buffers_.sum.get(), step, buffers_.sqr.get(), 2 * step,
                                 {image.Width, image.Height}, kSumOffset, 0.0);
    ippiRectStdDev_32f_C1R(buffers_.sum.get(), step, buffers_.sqr.get(), 2 * step, buffers_.norm.get(), step, roi,
                           normRect_);
  }

  // Stored rows count from the bottom of the picture, rectangles from its top.
  void AddHit(const ScaledImage& at, int u, int v) {
    const auto unscaled = [&at](int c) { return roundToEven(static_cast<float>(c) / at.scale); };
    rects_.push_back({unscaled(u), imageHeight_ - unscaled(v + detector_.WindowHeight),
                      unscaled(u + detector_.WindowWidth), imageHeight_ - unscaled(v)});
  }

  const TIppiFaceDetector& detector_;
  const int imageHeight_;
  std::vector<TRectangle>& rects_;
  IppiRect normRect_ = {0, 0, 0, 0};
  ScanBuffers buffers_;
  HaarCascade cascade_;
  std::vector<HaarCascade::Position> hits_;
};

}  // namespace

void TIppiFaceDetector::DetectFaceRaw(TIppiImage& image, std::vector<TRectangle>& rects, float scale) {
  rects.clear();
  if (image.Pixels == nullptr) return;
  Scan scan(*this, image.Height, rects);
  ScaledImage at;
  for (float s = scale;; s /= kScaleStep) {
    const float width = static_cast<float>(image.Width) * s;
    const float height = static_cast<float>(image.Height) * s;
    if (!(width > WindowWidth * 0.7 && height > WindowHeight * 0.7)) break;
    at.Make(image, s, width, height);
    scan.Run(at);
  }
}
