// OpenCV on the same pictures, one thread. Each row has the name of the row that it is compared with.
#include <benchmark/benchmark.h>

#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#include <opencv2/objdetect.hpp>
#include <vector>

#include "bench/subject.h"

namespace {

// A view of the image's own pixels: rows lie bottom first, which costs or saves OpenCV nothing.
cv::Mat matOf(const TIppiImage& image) {
  return cv::Mat(image.Height, image.Width, image.Mode == imGray8 ? CV_8UC1 : CV_8UC3, image.Pixels,
                 static_cast<std::size_t>(image.Step));
}

void resize(benchmark::State& state, TIppiImage BenchSubject::*source, double ratio, int interpolation) {
  cv::setNumThreads(1);
  const cv::Mat image = matOf(BenchSubject::instance().*source);
  cv::Mat scaled;
  for (auto _ : state) {
    cv::resize(image, scaled, cv::Size(), ratio, ratio, interpolation);
    benchmark::DoNotOptimize(scaled.data);
  }
}

void rotate(benchmark::State& state, TIppiImage BenchSubject::*source) {
  cv::setNumThreads(1);
  const cv::Mat image = matOf(BenchSubject::instance().*source);
  const cv::Point2f centre(static_cast<float>(image.cols / 2), static_cast<float>(image.rows / 2));
  const cv::Mat turn = cv::getRotationMatrix2D(centre, 15.0, 1.0);
  cv::Mat turned;
  for (auto _ : state) {
    cv::warpAffine(image, turned, turn, image.size(), cv::INTER_LINEAR);
    benchmark::DoNotOptimize(turned.data);
  }
}

void integral(benchmark::State& state) {
  cv::setNumThreads(1);
  const cv::Mat image = matOf(BenchSubject::instance().working);
  cv::Mat sum, squares;
  for (auto _ : state) {
    cv::integral(image, sum, squares, CV_32F, CV_64F);
    benchmark::DoNotOptimize(sum.data);
  }
}

void scan(benchmark::State& state, TIppiImage BenchSubject::*source) {
  cv::setNumThreads(1);
  cv::Mat upright;
  cv::flip(matOf(BenchSubject::instance().*source), upright, 0);
  cv::CascadeClassifier cascade;
  if (!cascade.load(PORTRAITCUT_BENCH_OPENCV_CASCADE)) {
    state.SkipWithError("cannot load the cascade");
    return;
  }
  std::vector<cv::Rect> faces;
  for (auto _ : state) cascade.detectMultiScale(upright, faces, 1.18, 3, 0, cv::Size(20, 20));
  state.counters["faces"] = static_cast<double>(faces.size());
}

BENCHMARK_CAPTURE(resize, gray_12mp_to_384, &BenchSubject::gray, 0.096, cv::INTER_AREA)
    ->Name("opencv/resize_area/gray_12mp_to_384")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(resize, gray_1000_by_085, &BenchSubject::grayQuarter, 1 / 1.18, cv::INTER_AREA)
    ->Name("opencv/resize_area/gray_1000_by_0.85")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(resize, color_12mp_by_03, &BenchSubject::color, 0.3, cv::INTER_AREA)
    ->Name("opencv/resize_area/color_12mp_by_0.3")
    ->Unit(benchmark::kMillisecond);
// OpenCV's kernel of this kind has eight taps an axis, not six.
BENCHMARK_CAPTURE(resize, gray_six_tap, &BenchSubject::grayQuarter, 1.5, cv::INTER_LANCZOS4)
    ->Name("opencv/resize_six_tap/gray_1000_by_1.5")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(resize, color_six_tap, &BenchSubject::colorQuarter, 1.5, cv::INTER_LANCZOS4)
    ->Name("opencv/resize_six_tap/color_1000_by_1.5")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(rotate, working, &BenchSubject::working)
    ->Name("opencv/rotate/gray_384")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(rotate, gray, &BenchSubject::grayQuarter)
    ->Name("opencv/rotate/gray_1000")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(rotate, color, &BenchSubject::colorQuarter)
    ->Name("opencv/rotate/color_1000")
    ->Unit(benchmark::kMillisecond);
BENCHMARK(integral)->Name("opencv/integral/384")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(scan, faces, &BenchSubject::working)->Name("opencv/scan/faces_384")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(scan, texture, &BenchSubject::texture)
    ->Name("opencv/scan/texture_384")
    ->Unit(benchmark::kMillisecond);

}  // namespace
