// Pixel primitives on a picture of twelve megapixels.
#include <benchmark/benchmark.h>

#include <vector>

#include "bench/pictures.h"
#include "primitives/ippi.h"

namespace {

constexpr IppiSize kSize = {4000, 3000};

using TwoImages = IppStatus (*)(const Ipp8u*, int, Ipp8u*, int, IppiSize);

const BenchPicture& picture() {
  static const BenchPicture made = makeColorPicture(kSize.width, kSize.height);
  return made;
}

// Four bytes a pixel whatever the layout: the samples of the picture, over again for the fourth.
std::vector<Ipp8u> buffer() {
  std::vector<Ipp8u> bytes(picture().samples);
  bytes.insert(bytes.end(), bytes.begin(), bytes.begin() + kSize.width * kSize.height);
  return bytes;
}

void countPixels(benchmark::State& state) {
  state.counters["pixels"] =
      benchmark::Counter(double{kSize.width} * kSize.height, benchmark::Counter::kIsIterationInvariantRate);
}

void convert(benchmark::State& state, TwoImages function, int srcBytes, int dstBytes) {
  const std::vector<Ipp8u> src = buffer();
  std::vector<Ipp8u> dst = buffer();
  for (auto _ : state) {
    function(src.data(), kSize.width * srcBytes, dst.data(), kSize.width * dstBytes, kSize);
    benchmark::ClobberMemory();
  }
  countPixels(state);
}

void transpose(benchmark::State& state, TwoImages function, int channels) {
  const std::vector<Ipp8u> src = buffer();
  std::vector<Ipp8u> dst = buffer();
  for (auto _ : state) {
    function(src.data(), kSize.width * channels, dst.data(), kSize.height * channels, kSize);
    benchmark::ClobberMemory();
  }
  countPixels(state);
}

void mirror(benchmark::State& state, IppStatus (*function)(Ipp8u*, int, IppiSize, int), int channels, int flip) {
  std::vector<Ipp8u> image = buffer();
  for (auto _ : state) {
    function(image.data(), kSize.width * channels, kSize, flip);
    benchmark::ClobberMemory();
  }
  countPixels(state);
}

IppStatus grayToColor(const Ipp8u* src, int srcStep, Ipp8u* dst, int dstStep, IppiSize size) {
  const Ipp8u* const planes[3] = {src, src, src};
  return ippiCopy_8u_P3C3R(planes, srcStep, dst, dstStep, size);
}

IppStatus turnChannels(const Ipp8u* src, int srcStep, Ipp8u* dst, int dstStep, IppiSize size) {
  const int order[3] = {2, 1, 0};
  return ippiSwapChannels_8u_C3R(src, srcStep, dst, dstStep, size, order);
}

IppStatus toFloat(const Ipp8u* src, int srcStep, Ipp8u* dst, int, IppiSize size) {
  return ippiConvert_8u32f_C1R(src, srcStep, reinterpret_cast<Ipp32f*>(dst), size.width * 4, size);
}

IppStatus compose(const Ipp8u* src, int srcStep, Ipp8u* dst, int dstStep, IppiSize size) {
  return ippiAlphaComp_8u_AC4R(src, srcStep, dst, dstStep, dst, dstStep, size, ippAlphaOver);
}

IppStatus intoAlpha(const Ipp8u* src, int srcStep, Ipp8u* dst, int dstStep, IppiSize size) {
  return ippiCopy_8u_C1C4R(src, srcStep, dst + 3, dstStep, size);
}

IppStatus opaque(const Ipp8u*, int, Ipp8u* dst, int dstStep, IppiSize size) {
  return ippiSet_8u_C4CR(255, dst + 3, dstStep, size);
}

BENCHMARK_CAPTURE(convert, RGBToGray_8u_C3C1R, ippiRGBToGray_8u_C3C1R, 3, 1)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(convert, RGBToGray_8u_AC4C1R, ippiRGBToGray_8u_AC4C1R, 4, 1)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(convert, Copy_8u_C3AC4R, ippiCopy_8u_C3AC4R, 3, 4)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(convert, Copy_8u_AC4C3R, ippiCopy_8u_AC4C3R, 4, 3)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(convert, Copy_8u_AC4R, ippiCopy_8u_AC4R, 4, 4)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(convert, Copy_8u_C4R, ippiCopy_8u_C4R, 4, 4)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(convert, Copy_8u_C1C4R, intoAlpha, 1, 4)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(convert, Copy_8u_P3C3R, grayToColor, 1, 3)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(convert, Set_8u_C4CR, opaque, 4, 4)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(convert, SwapChannels_8u_C3R, turnChannels, 3, 3)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(convert, Convert_8u32f_C1R, toFloat, 1, 4)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(convert, AlphaComp_8u_AC4R, compose, 4, 4)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(transpose, C1R, ippiTranspose_8u_C1R, 1)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(transpose, C3R, ippiTranspose_8u_C3R, 3)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(transpose, C4R, ippiTranspose_8u_C4R, 4)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(mirror, C3IR_rows, ippiMirror_8u_C3IR, 3, ippAxsHorizontal)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(mirror, AC4IR_rows, ippiMirror_8u_AC4IR, 4, ippAxsHorizontal)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(mirror, C3IR_columns, ippiMirror_8u_C3IR, 3, ippAxsVertical)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(mirror, AC4IR_columns, ippiMirror_8u_AC4IR, 4, ippAxsVertical)->Unit(benchmark::kMillisecond);

}  // namespace
