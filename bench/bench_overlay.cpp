// The matching of an overlay to its background, and the Gaussian filter in it beside OpenCV's on the same plane with
// the same kernel and border, on one thread.
#include <benchmark/benchmark.h>

#include <cmath>
#include <vector>

#include "api/vizl_api.h"
#include "bench/pictures.h"
#include "image/TIppiImage.h"
#include "image/gaussian_blur.h"
#include "primitives/ippi.h"
#include "primitives/kernels.h"

#ifdef PORTRAITCUT_BENCH_OPENCV
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#endif

namespace {

std::vector<float> planeOf(int width, int height) {
  const BenchPicture picture = makeGrayPicture(width, height);
  return {picture.samples.begin(), picture.samples.end()};
}

// Arguments: width, height, kernel size.
void gauss(benchmark::State& state) {
  const IppiSize size = {static_cast<int>(state.range(0)), static_cast<int>(state.range(1))};
  const int kernelSize = static_cast<int>(state.range(2)), step = size.width * 4;
  const std::vector<float> source = planeOf(size.width, size.height);
  std::vector<float> target(source.size());
  int bytes = 0;
  ippiFilterGaussGetBufferSize_32f_C1R(size, kernelSize, &bytes);
  std::vector<Ipp8u> buffer(static_cast<std::size_t>(bytes));
  for (auto _ : state) {
    ippiFilterGaussBorder_32f_C1R(source.data(), step, target.data(), step, size, kernelSize,
                                  static_cast<float>(kernelSize / 1.5), 0, 0.0F, buffer.data());
    benchmark::ClobberMemory();
  }
}

#ifdef PORTRAITCUT_BENCH_OPENCV
void gaussOpencv(benchmark::State& state) {
  cv::setNumThreads(1);
  const int width = static_cast<int>(state.range(0)), height = static_cast<int>(state.range(1));
  const int kernelSize = static_cast<int>(state.range(2));
  std::vector<float> source = planeOf(width, height);
  const cv::Mat from(height, width, CV_32FC1, source.data());
  cv::Mat to = cv::Mat::ones(height, width, CV_32FC1);
  for (auto _ : state) {
    cv::GaussianBlur(from, to, {kernelSize, kernelSize}, kernelSize / 1.5, 0, cv::BORDER_REPLICATE);
    benchmark::ClobberMemory();
  }
}
#endif

// A colour picture whose alpha falls off towards the edge.
void makeOverlay(TIppiImage& overlay, int side) {
  const BenchPicture picture = makeColorPicture(side, side);
  TIppiImage alpha;
  alpha.AllocNew(side, side);
  overlay.AllocNew(side, side);
  for (int y = 0; y < side; ++y) {
    ippiCopy_8u_C3AC4R(picture.samples.data() + y * picture.step(), picture.step(), overlay.Pixels + y * overlay.Step,
                       overlay.Step, {side, 1});
    for (int x = 0; x < side; ++x) {
      const double fall = 1.2 - std::hypot(2.0 * x / side - 1.0, 2.0 * y / side - 1.0);
      alpha.Pixels[y * alpha.Step + x] = static_cast<Ipp8u>(255 * std::min(std::max(fall, 0.0), 1.0));
    }
  }
  overlay.AddAlpha(alpha);
}

HImage handleOf(const TIppiImage& image) {
  HImage handle = 0;
  VIZL_LoadImageFromBuffer(&handle, image.Pixels, image.Width, image.Height, image.Step, VIZL_IMAGE_COLOR32);
  return handle;
}

void putAdjusted(benchmark::State& state) {
  constexpr int kSide = 512;
  TIppiImage overlay(imRGBA32), back(imRGBA32);
  makeOverlay(overlay, kSide);
  makeOverlay(back, 2 * kSide);
  VIZL_Initialize("");
  const HImage image = handleOf(overlay), ground = handleOf(back);
  HImage result = 0;
  VIZL_CreateEmptyImage(&result);
  int32_t code = VIZLE_OK;
  for (auto _ : state) code = VIZL_PutImageAdjustColors(image, 200, 300, ground, result);
  if (code != VIZLE_OK) state.SkipWithError("composition failed");
  VIZL_Finalize();
}

void blur(benchmark::State& state) {
  TIppiImage source(imRGBA32), result;
  makeOverlay(source, 512);
  for (auto _ : state) ApplyGaussianBlurAC4R(source, result, static_cast<float>(state.range(0)));
}

// The division of 512 rows of 512 pixels, three channels.
void matchRows(benchmark::State& state) {
  TIppiImage image(imRGBA32), small, large;
  makeOverlay(image, 512);
  ApplyGaussianBlurAC4R(image, small, 43.0F);
  ApplyGaussianBlurAC4R(image, large, 102.0F);
  const LocalMeans means = {small.PixelsF, large.PixelsF, large.PixelsF, small.PixelsF};
  for (auto _ : state) {
    for (int y = 0; y < image.Height; ++y) kernels().overlay.matchRow(image.Pixels + y * image.Step, means, 7U, 512);
    benchmark::ClobberMemory();
  }
}

void planes(benchmark::internal::Benchmark* bench) {
  bench->ArgNames({"width", "height", "kernel"});
  for (int kernel : {3, 7, 65, 155}) bench->Args({512, 512, kernel});
  for (int kernel : {3, 15, 125, 301}) bench->Args({1500, 1000, kernel});
  for (int kernel : {3, 5, 31, 201, 1201}) bench->Args({4000, 3000, kernel});
}

BENCHMARK(gauss)->Name("gauss")->Apply(planes)->Unit(benchmark::kMillisecond);
#ifdef PORTRAITCUT_BENCH_OPENCV
BENCHMARK(gaussOpencv)->Name("opencv_gauss")->Apply(planes)->Unit(benchmark::kMillisecond);
#endif
BENCHMARK(blur)->Name("blur/512")->Arg(43)->Arg(102)->Unit(benchmark::kMillisecond);
BENCHMARK(matchRows)->Name("match_levels/512")->Unit(benchmark::kMillisecond);
BENCHMARK(putAdjusted)->Name("put_adjusted/512")->Unit(benchmark::kMillisecond);

}  // namespace
