// The calls of an application, and libjpeg alone on the same file.
#include <benchmark/benchmark.h>
#include <jpeglib.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "api/pc_api.h"
#include "api/vizl_api.h"
#include "bench/subject.h"

namespace {

const char* const kLevelNames[] = {"fast", "balanced", "thorough"};

// Detection as VIZL_DetectFace does it from the second call on a handle: the gray copy is there already.
void detectFace(benchmark::State& state) {
  const BenchSubject& subject = BenchSubject::instance();
  VIZL_Initialize("");
  pcSetDetectionPerformance(static_cast<PcDetectionPerformance>(state.range(0)));
  HImage image = 0;
  VIZL_LoadImageFromFile(&image, subject.jpegFile.c_str());
  TFacePosition face{};
  int32_t code = VIZL_DetectFace(image, &face);
  for (auto _ : state) code = VIZL_DetectFace(image, &face);
  if (code != VIZLE_OK && code != VIZLE_NO_FACE) state.SkipWithError("detection failed");
  state.SetLabel(std::string(kLevelNames[state.range(0)]) + (code == VIZLE_OK ? "" : ", no face"));
  VIZL_Finalize();
}

void portraitCut(benchmark::State& state) {
  const BenchSubject& subject = BenchSubject::instance();
  const std::string output = temporaryFile("_portrait.jpg");
  pcInitialize();
  pcSetDetectionPerformance(static_cast<PcDetectionPerformance>(state.range(0)));
  int32_t code = VIZLE_OK;
  for (auto _ : state) code = pcPortraitCut(subject.jpegFile.c_str(), output.c_str(), 300, 400);
  if (code != VIZLE_OK && code != VIZLE_NO_FACE) state.SkipWithError("cut failed");
  state.SetLabel(std::string(kLevelNames[state.range(0)]) + (code == VIZLE_OK ? "" : ", no face"));
  pcFinalize();
  std::filesystem::remove(output);
}

// Decodes into one row that stays in the cache: the least that reading the picture can cost.
void libjpegDecode(benchmark::State& state) {
  std::ifstream in(BenchSubject::instance().jpegFile, std::ios::binary);
  const std::vector<char> bytes{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
  std::vector<JSAMPLE> row(static_cast<std::size_t>(BenchSubject::kWidth) * 3);
  JSAMPROW rows[] = {row.data()};
  for (auto _ : state) {
    jpeg_decompress_struct decoder;
    jpeg_error_mgr errors;
    decoder.err = jpeg_std_error(&errors);
    jpeg_create_decompress(&decoder);
    jpeg_mem_src(&decoder, reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
    jpeg_read_header(&decoder, TRUE);
    decoder.out_color_space = JCS_RGB;
    jpeg_start_decompress(&decoder);
    while (decoder.output_scanline < decoder.output_height) jpeg_read_scanlines(&decoder, rows, 1);
    jpeg_finish_decompress(&decoder);
    jpeg_destroy_decompress(&decoder);
  }
  state.counters["megabytes"] = static_cast<double>(bytes.size()) / 1e6;
}

BENCHMARK(detectFace)->Name("detect_face/12mp")->DenseRange(0, 2)->Unit(benchmark::kMillisecond);
BENCHMARK(portraitCut)->Name("portrait_cut/12mp")->DenseRange(0, 2)->Unit(benchmark::kMillisecond);
BENCHMARK(libjpegDecode)->Name("libjpeg/jpeg_load/12mp")->Unit(benchmark::kMillisecond);

}  // namespace
