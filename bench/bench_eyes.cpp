// The eye search and its parts.
#include <benchmark/benchmark.h>

#include <memory>

#include "api/vizl_api.h"
#include "eyes/eye_model.h"
#include "eyes/eye_score.h"
#include "eyes/eye_window.h"
#include "image/TIppiImage.h"
#include "primitives/ippi.h"

namespace {

// Both eyes of one face, as an application asks for them.
void eyePair(benchmark::State& state) {
  VIZL_Initialize(nullptr);
  HImage image = 0;
  const TFacePosition face = {387, 115, 92, 0, 10};
  TPoint points[40] = {};
  int32_t code = VIZL_LoadImageFromFile(&image, PORTRAITCUT_TEST_DATA "/average_faces.png");
  if (code == VIZLE_OK) code = VIZL_DetectEyesInRegion(image, &face, &points);
  if (code != VIZLE_OK) state.SkipWithError("no eyes");
  for (auto _ : state) benchmark::DoNotOptimize(VIZL_DetectEyesInRegion(image, &face, &points));
  VIZL_Finalize();
}

void fillFrame(TIppiImage& frame) {
  frame.AllocNew(kEyeFrameSide, kEyeFrameSide);
  unsigned state = 1;
  for (int i = 0; i < frame.SizeBytes; ++i) {
    state = state * 1664525u + 1013904223u;
    frame.Pixels[i] = static_cast<unsigned char>((state >> 26) + 100);
  }
}

void windowFeatures(benchmark::State& state) {
  VIZL_Initialize(nullptr);
  TIppiImage frame(imGray8);
  fillFrame(frame);
  {
    const auto window = std::make_unique<TEyeWindow>(*eyeHMaxPrototype);
    for (auto _ : state) PrepareEyeWindow(&frame, false, *window);
  }
  VIZL_Finalize();
}

void windowScores(benchmark::State& state) {
  VIZL_Initialize(nullptr);
  TIppiImage frame(imGray8);
  fillFrame(frame);
  {
    const auto window = std::make_unique<TEyeWindow>(*eyeHMaxPrototype);
    PrepareEyeWindow(&frame, false, *window);
    float scores[kEyeWindowSide * kEyeWindowSide];
    for (auto _ : state) {
      ScoreEyeWindow(*window, *eyeRows, scores);
      benchmark::DoNotOptimize(scores);
    }
  }
  VIZL_Finalize();
}

void inverseTransform(benchmark::State& state) {
  IppiFFTSpec_R_32f* spec = nullptr;
  ippiFFTInitAlloc_R_32f(&spec, 5, 5, IPP_FFT_DIV_INV_BY_N, 1);
  float map[32 * 32] = {1};
  for (auto _ : state) benchmark::DoNotOptimize(ippiFFTInv_PackToR_32f_C1IR(map, 128, spec, nullptr));
  ippiFFTFree_R_32f(spec);
}

BENCHMARK(eyePair)->Name("eyes/pair")->Unit(benchmark::kMillisecond);
BENCHMARK(windowFeatures)->Name("eyes/window_features")->Unit(benchmark::kMillisecond);
BENCHMARK(windowScores)->Name("eyes/window_scores")->Unit(benchmark::kMillisecond);
BENCHMARK(inverseTransform)->Name("fft_inverse/32x32")->Unit(benchmark::kMicrosecond);

}  // namespace
