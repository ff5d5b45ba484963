// Operations on whole images, as the pipeline calls them. Names that OpenCV's rows repeat are compared.
#include <benchmark/benchmark.h>

#include <vector>

#include "bench/subject.h"
#include "detect/TIppiFaceDetector.h"
#include "detect/TRectangle.h"
#include "primitives/ippi.h"

namespace {

void jpegLoad(benchmark::State& state) {
  const BenchSubject& subject = BenchSubject::instance();
  for (auto _ : state) {
    TIppiImage image(imRGB24);
    if (image.LoadFromJpegFile(subject.jpegFile.c_str()) != 0) state.SkipWithError("cannot decode");
    benchmark::DoNotOptimize(image.Pixels);
  }
}

void grayCopy(benchmark::State& state) {
  BenchSubject& subject = BenchSubject::instance();
  TIppiImage gray;
  for (auto _ : state) {
    gray.CopyFrom(subject.color);
    benchmark::DoNotOptimize(gray.Pixels);
  }
}

void resize(benchmark::State& state, TIppiImage BenchSubject::*source, double ratio) {
  TIppiImage& image = BenchSubject::instance().*source;
  TIppiImage scaled;
  for (auto _ : state) {
    image.Resize(scaled, ratio);
    benchmark::DoNotOptimize(scaled.Pixels);
  }
}

void rotate(benchmark::State& state, TIppiImage BenchSubject::*source) {
  TIppiImage& image = BenchSubject::instance().*source;
  TIppiImage turned;
  for (auto _ : state) {
    image.Rotate(turned, 15.0);
    benchmark::DoNotOptimize(turned.Pixels);
  }
}

void integral(benchmark::State& state) {
  TIppiImage& image = BenchSubject::instance().working;
  const int pitch = 4096;
  const auto values = static_cast<std::size_t>(image.Height + 1) * pitch;
  std::vector<Ipp32f> sum(values / sizeof(Ipp32f));
  std::vector<Ipp64f> squares(values / sizeof(Ipp64f));
  for (auto _ : state) {
    ippiSqrIntegral_8u32f64f_C1R(image.Pixels, image.Step, sum.data(), pitch, squares.data(), pitch, image.RoiSize,
                                 -16777216.0f, 0.0);
    benchmark::DoNotOptimize(sum.data());
    benchmark::ClobberMemory();
  }
}

// With the cascade inside the library; one pass at one angle, of which a detection makes three.
void scan(benchmark::State& state, TIppiImage BenchSubject::*source) {
  TIppiImage& image = BenchSubject::instance().*source;
  TIppiFaceDetector detector;
  std::vector<TRectangle> hits;
  for (auto _ : state) detector.DetectFaceRaw(image, hits, 1.0f);
  state.counters["hits"] = static_cast<double>(hits.size());
  state.counters["stages"] = detector.StageCount;
}

BENCHMARK(jpegLoad)->Name("jpeg_load/12mp")->Unit(benchmark::kMillisecond);
BENCHMARK(grayCopy)->Name("gray_copy/12mp")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(resize, gray_12mp_to_384, &BenchSubject::gray, 0.096)
    ->Name("resize_area/gray_12mp_to_384")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(resize, gray_1000_by_085, &BenchSubject::grayQuarter, 1 / 1.18)
    ->Name("resize_area/gray_1000_by_0.85")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(resize, color_12mp_by_03, &BenchSubject::color, 0.3)
    ->Name("resize_area/color_12mp_by_0.3")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(resize, gray_six_tap, &BenchSubject::grayQuarter, 1.5)
    ->Name("resize_six_tap/gray_1000_by_1.5")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(resize, color_six_tap, &BenchSubject::colorQuarter, 1.5)
    ->Name("resize_six_tap/color_1000_by_1.5")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(rotate, working, &BenchSubject::working)->Name("rotate/gray_384")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(rotate, gray, &BenchSubject::grayQuarter)->Name("rotate/gray_1000")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(rotate, color, &BenchSubject::colorQuarter)->Name("rotate/color_1000")->Unit(benchmark::kMillisecond);
BENCHMARK(integral)->Name("integral/384")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(scan, faces, &BenchSubject::working)->Name("scan/faces_384")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(scan, texture, &BenchSubject::texture)->Name("scan/texture_384")->Unit(benchmark::kMillisecond);

}  // namespace
