#include <benchmark/benchmark.h>

#include <algorithm>
#include <memory>
#include <vector>

#include "bench/pictures.h"
#include "bench/synthetic_cascade.h"
#include "detect/TIppiFaceDetector.h"
#include "image/TIppiImage.h"
#include "primitives/ippi.h"

#ifdef PORTRAITCUT_BENCH_OPENCV_CASCADE
#include <opencv2/core.hpp>
#include <opencv2/objdetect.hpp>
#endif

namespace {

constexpr int kWidth = 384;
constexpr int kHeight = 256;

TIppiImage& scanPicture() {
  static TIppiImage image;
  if (image.Pixels == nullptr) {
    const BenchPicture picture = makeGrayPicture(kWidth, kHeight);
    image.AllocNew(kWidth, kHeight);
    for (int y = 0; y < kHeight; y++) {
      std::copy_n(picture.samples.data() + y * kWidth, kWidth, image.Pixels + (kHeight - 1 - y) * image.Step);
    }
  }
  return image;
}

TIppiFaceDetector& syntheticDetector() {
  static const std::vector<unsigned char> stream = makeSyntheticCascade(scanPicture());
  static TIppiFaceDetector detector(stream.data(), static_cast<unsigned>(stream.size()));
  return detector;
}

struct Maps {
  std::vector<float> sum = std::vector<float>((kWidth + 1) * (kHeight + 1));
  std::vector<float> norm = sum;
  std::vector<double> sqr = std::vector<double>(sum.size());
  static constexpr int kStep = (kWidth + 1) * 4;
  static constexpr IppiSize kRoi = {kWidth - 19, kHeight - 19};

  void Integrate(TIppiImage& image) {
    ippiSqrIntegral_8u32f64f_C1R(image.Pixels, image.Step, sum.data(), kStep, sqr.data(), 2 * kStep, {kWidth, kHeight},
                                 -16777216.0f, 0.0);
  }
  void Deviate() {
    ippiRectStdDev_32f_C1R(sum.data(), kStep, sqr.data(), 2 * kStep, norm.data(), kStep, kRoi, {1, 1, 18, 18});
  }
};

void Integral(benchmark::State& state) {
  Maps maps;
  for (auto _ : state) {
    maps.Integrate(scanPicture());
    benchmark::ClobberMemory();
  }
}
BENCHMARK(Integral);

void RectStdDev(benchmark::State& state) {
  Maps maps;
  maps.Integrate(scanPicture());
  for (auto _ : state) {
    maps.Deviate();
    benchmark::ClobberMemory();
  }
}
BENCHMARK(RectStdDev);

// One stage on every window of the picture.
void HaarStage(benchmark::State& state) {
  Maps maps;
  maps.Integrate(scanPicture());
  maps.Deviate();
  const auto stage = static_cast<int>(state.range(0));
  TIppiFaceDetector& detector = syntheticDetector();
  std::vector<unsigned char> mask(Maps::kRoi.width * Maps::kRoi.height);
  for (auto _ : state) {
    std::fill(mask.begin(), mask.end(), static_cast<unsigned char>(255));
    int positive = 0;
    ippiApplyHaarClassifier_32f_C1R(maps.sum.data(), Maps::kStep, maps.norm.data(), Maps::kStep, mask.data(),
                                    Maps::kRoi.width, Maps::kRoi, &positive, detector.StageThreshold[stage],
                                    detector.StageClassifiers[stage]);
    benchmark::DoNotOptimize(positive);
  }
}
BENCHMARK(HaarStage)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);

// The resizes that one scan makes, without the scan.
void ScanResizes(benchmark::State& state) {
  TIppiImage scaled;
  for (auto _ : state) {
    for (float s = 1.0f; kHeight * s > 14.0f; s /= 1.18f) scanPicture().Resize(scaled, s);
  }
}
BENCHMARK(ScanResizes)->Unit(benchmark::kMillisecond);

void Scan(benchmark::State& state) {
  std::vector<TRectangle> rects;
  for (auto _ : state) syntheticDetector().DetectFaceRaw(scanPicture(), rects, 1.0f);
  state.counters["hits"] = static_cast<double>(rects.size());
}
BENCHMARK(Scan)->Unit(benchmark::kMillisecond);

void ScanOwnCascade(benchmark::State& state) {
  static TIppiFaceDetector detector;
  std::vector<TRectangle> rects;
  for (auto _ : state) detector.DetectFaceRaw(scanPicture(), rects, 1.0f);
  state.counters["stages"] = detector.StageCount;
  state.counters["hits"] = static_cast<double>(rects.size());
}
BENCHMARK(ScanOwnCascade)->Unit(benchmark::kMillisecond);

#ifdef PORTRAITCUT_BENCH_OPENCV_CASCADE
void ScanOpenCv(benchmark::State& state) {
  cv::setNumThreads(1);
  cv::CascadeClassifier classifier(PORTRAITCUT_BENCH_OPENCV_CASCADE);
  const BenchPicture picture = makeGrayPicture(kWidth, kHeight);
  const cv::Mat image(kHeight, kWidth, CV_8UC1, const_cast<unsigned char*>(picture.samples.data()));
  std::vector<cv::Rect> rects;
  for (auto _ : state) classifier.detectMultiScale(image, rects, 1.18, 0, 0, {20, 20});
  state.counters["hits"] = static_cast<double>(rects.size());
}
BENCHMARK(ScanOpenCv)->Unit(benchmark::kMillisecond);
#endif

}  // namespace
