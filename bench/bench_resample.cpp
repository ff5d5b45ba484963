// Resizes and rotation at the sizes that the library uses: a photo down to the scan image, the scan image down
// the scales of the detector, upright and turned faces. Rows that start with opencv_ time its area resize and its
// rotation on the same picture, on one thread.
#include <benchmark/benchmark.h>

#include <map>
#include <tuple>

#include "bench/pictures.h"
#include "primitives/ippi.h"

#ifdef PORTRAITCUT_BENCH_OPENCV
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#endif

namespace {

const BenchPicture& pictureOf(int width, int height, int channels) {
  static std::map<std::tuple<int, int, int>, BenchPicture> made;
  BenchPicture& picture = made[{width, height, channels}];
  if (picture.samples.empty()) {
    picture = channels == 1 ? makeGrayPicture(width, height) : makeColorPicture(width, height);
  }
  return picture;
}

struct Target {
  double factor;
  int width;
  int height;
  std::vector<std::uint8_t> samples;

  // `permille` is the factor in thousandths.
  Target(const BenchPicture& source, int permille)
      : factor(permille / 1000.0),
        width(static_cast<int>(source.width * factor + 1e-7)),
        height(static_cast<int>(source.height * factor + 1e-7)),
        samples(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) *
                static_cast<std::size_t>(source.channels)) {}
};

// Arguments: channels, width, height, factor in thousandths.
void resizeBy(benchmark::State& state, int interpolation) {
  const BenchPicture& source =
      pictureOf(static_cast<int>(state.range(1)), static_cast<int>(state.range(2)), static_cast<int>(state.range(0)));
  Target target(source, static_cast<int>(state.range(3)));
  const auto resize = source.channels == 1 ? ippiResize_8u_C1R : ippiResize_8u_C3R;
  const IppiRect roi{0, 0, source.width, source.height};
  for (auto _ : state) {
    resize(source.samples.data(), {source.width, source.height}, source.step(), roi, target.samples.data(),
           target.width * source.channels, {target.width, target.height}, target.factor, target.factor, interpolation);
    benchmark::ClobberMemory();
  }
}

void resizeArea(benchmark::State& state) { resizeBy(state, IPPI_INTER_SUPER); }
void resizeLanczos(benchmark::State& state) { resizeBy(state, IPPI_INTER_LANCZOS); }

// Arguments: channels, width, height, degrees.
void rotate(benchmark::State& state) {
  const BenchPicture& source =
      pictureOf(static_cast<int>(state.range(1)), static_cast<int>(state.range(2)), static_cast<int>(state.range(0)));
  Target target(source, 1000);
  const auto turn = source.channels == 1 ? ippiRotateCenter_8u_C1R : ippiRotateCenter_8u_C3R;
  const IppiRect roi{0, 0, source.width, source.height};
  for (auto _ : state) {
    turn(source.samples.data(), {source.width, source.height}, source.step(), roi, target.samples.data(), source.step(),
         roi, static_cast<double>(state.range(3)), source.width / 2, source.height / 2,
         IPPI_INTER_LINEAR | IPPI_SMOOTH_EDGE);
    benchmark::ClobberMemory();
  }
}

#ifdef PORTRAITCUT_BENCH_OPENCV
cv::Mat matOf(const BenchPicture& picture) {
  return {picture.height, picture.width, CV_8UC(picture.channels), const_cast<std::uint8_t*>(picture.samples.data())};
}

void resizeAreaOpencv(benchmark::State& state) {
  cv::setNumThreads(1);
  const BenchPicture& source =
      pictureOf(static_cast<int>(state.range(1)), static_cast<int>(state.range(2)), static_cast<int>(state.range(0)));
  const Target target(source, static_cast<int>(state.range(3)));
  const cv::Mat from = matOf(source);
  cv::Mat to;
  for (auto _ : state) {
    cv::resize(from, to, {target.width, target.height}, 0, 0, cv::INTER_AREA);
    benchmark::ClobberMemory();
  }
}

void rotateOpencv(benchmark::State& state) {
  cv::setNumThreads(1);
  const BenchPicture& source =
      pictureOf(static_cast<int>(state.range(1)), static_cast<int>(state.range(2)), static_cast<int>(state.range(0)));
  const cv::Mat from = matOf(source);
  cv::Mat to = cv::Mat::zeros(from.size(), from.type());
  const cv::Point2f center(static_cast<float>(source.width / 2), static_cast<float>(source.height / 2));
  const cv::Mat matrix = cv::getRotationMatrix2D(center, static_cast<double>(state.range(3)), 1.0);
  for (auto _ : state) {
    cv::warpAffine(from, to, matrix, from.size(), cv::INTER_LINEAR, cv::BORDER_TRANSPARENT);
    benchmark::ClobberMemory();
  }
}
#endif

void areaSizes(benchmark::internal::Benchmark* bench) {
  for (int channels : {1, 3}) {
    bench->Args({channels, 4000, 3000, 96})->Args({channels, 4000, 3000, 250})->Args({channels, 1600, 1200, 240});
    for (int permille : {847, 718, 609, 370, 226}) bench->Args({channels, 384, 256, permille});
  }
  bench->ArgNames({"channels", "width", "height", "permille"});
}

void lanczosSizes(benchmark::internal::Benchmark* bench) {
  for (int channels : {1, 3}) bench->Args({channels, 384, 256, 1500})->Args({channels, 80, 80, 1700});
  bench->ArgNames({"channels", "width", "height", "permille"});
}

void turns(benchmark::internal::Benchmark* bench) {
  for (int channels : {1, 3}) {
    bench->Args({channels, 384, 256, 15})->Args({channels, 80, 80, 15})->Args({channels, 4000, 3000, 15});
  }
  bench->ArgNames({"channels", "width", "height", "degrees"});
}

BENCHMARK(resizeArea)->Name("resize_area")->Apply(areaSizes)->Unit(benchmark::kMicrosecond);
BENCHMARK(resizeLanczos)->Name("resize_lanczos")->Apply(lanczosSizes)->Unit(benchmark::kMicrosecond);
BENCHMARK(rotate)->Name("rotate")->Apply(turns)->Unit(benchmark::kMicrosecond);
#ifdef PORTRAITCUT_BENCH_OPENCV
BENCHMARK(resizeAreaOpencv)->Name("opencv_resize_area")->Apply(areaSizes)->Unit(benchmark::kMicrosecond);
BENCHMARK(rotateOpencv)->Name("opencv_rotate")->Apply(turns)->Unit(benchmark::kMicrosecond);
#endif

}  // namespace
