// Loading and saving a 12-megapixel picture in each format, beside what the bare decoders need: libjpeg
// and libpng decoding the same bytes into one reused row buffer.
#include <benchmark/benchmark.h>
#include <png.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/pictures.h"
#include "codecs/jpeg_library.h"
#include "image/TIppiImage.h"
#include "primitives/ippi.h"

namespace {

constexpr int kWidth = 4000;
constexpr int kHeight = 3000;

// A folder for the pictures that ends with the program.
class Folder {
 public:
  Folder() {
    char name[] = "/tmp/portraitcut_bench_XXXXXX";
    if (mkdtemp(name) == nullptr) throw std::runtime_error("no temporary folder");
    path_ = name;
  }
  ~Folder() {
    for (const char* file : {"/p.jpg", "/p.png", "/p.bmp", "/out"}) unlink((path_ + file).c_str());
    rmdir(path_.c_str());
  }
  std::string operator/(const char* file) const { return path_ + "/" + file; }

 private:
  std::string path_;
};

// Grain of up to 8 gray levels either way: with it the JPEG file takes 1.4 bits a pixel, as photos do;
// without it the decoders have hardly anything to decode.
BenchPicture grainyPicture() {
  BenchPicture picture = makeColorPicture(kWidth, kHeight);
  std::uint32_t state = 1;
  for (std::uint8_t& sample : picture.samples) {
    state = state * 1664525U + 1013904223U;
    const int grain = static_cast<int>((state >> 16) % 17U) - 8;
    sample = static_cast<std::uint8_t>(std::clamp(sample + grain, 0, 255));
  }
  return picture;
}

struct Inputs {
  Folder folder;
  TIppiImage image{imRGB24};
  std::vector<unsigned char> jpeg;
  std::vector<unsigned char> png;

  Inputs() {
    const BenchPicture picture = grainyPicture();
    image.AllocNew(kWidth, kHeight);
    ippiCopy_8u_C3R(picture.samples.data(), picture.step(), image.Pixels, image.Step, image.RoiSize);
    if (image.SaveToJpegFile((folder / "p.jpg").c_str(), 0) != 0 ||
        image.SaveToPngFile((folder / "p.png").c_str()) != 0 || image.SaveToFile((folder / "p.bmp").c_str()) != 0) {
      throw std::runtime_error("can't write the pictures");
    }
    jpeg = readAll("p.jpg");
    png = readAll("p.png");
  }

  std::vector<unsigned char> readAll(const char* name) const {
    std::ifstream file(folder / name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
};

const Inputs& inputs() {
  static const Inputs all;
  return all;
}

void bareLibjpeg(benchmark::State& state) {
  const std::vector<unsigned char>& bytes = inputs().jpeg;
  std::vector<unsigned char> row(kWidth * 3);
  for (auto _ : state) {
    jpeg_decompress_struct info = {};
    jpeg_error_mgr errors;
    info.err = jpeg_std_error(&errors);
    jpeg_create_decompress(&info);
    jpeg_mem_src(&info, bytes.data(), bytes.size());
    jpeg_read_header(&info, TRUE);
    jpeg_start_decompress(&info);
    while (info.output_scanline < info.output_height) {
      JSAMPROW rows[1] = {row.data()};
      jpeg_read_scanlines(&info, rows, 1);
    }
    jpeg_finish_decompress(&info);
    jpeg_destroy_decompress(&info);
    benchmark::ClobberMemory();
  }
}

void loadJpeg(benchmark::State& state) {
  const std::vector<unsigned char>& bytes = inputs().jpeg;
  for (auto _ : state) {
    TIppiImage image(static_cast<TIppiImageMode>(state.range(0)));
    if (image.LoadFromJpegBuffer(bytes.data(), static_cast<unsigned>(bytes.size())) != 0) state.SkipWithError("load");
  }
}

void loadJpegFile(benchmark::State& state) {
  const std::string name = inputs().folder / "p.jpg";
  for (auto _ : state) {
    TIppiImage image(imRGB24);
    if (image.LoadFromJpegFile(name.c_str()) != 0) state.SkipWithError("load");
  }
}

void takeBytes(png_structp png, png_bytep out, std::size_t count) {
  auto* const next = static_cast<const unsigned char**>(png_get_io_ptr(png));
  std::copy_n(*next, count, out);
  *next += count;
}

void bareLibpng(benchmark::State& state) {
  std::vector<unsigned char> row(kWidth * 4);
  for (auto _ : state) {
    const unsigned char* next = inputs().png.data();
    png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    png_set_read_fn(png, &next, takeBytes);
    png_read_info(png, info);
    for (int y = 0; y < kHeight; ++y) png_read_row(png, row.data(), nullptr);
    png_destroy_read_struct(&png, &info, nullptr);
    benchmark::ClobberMemory();
  }
}

void loadPng(benchmark::State& state) {
  const std::vector<unsigned char>& bytes = inputs().png;
  for (auto _ : state) {
    TIppiImage image(static_cast<TIppiImageMode>(state.range(0)));
    if (image.LoadFromPngBuffer(bytes.data(), static_cast<unsigned>(bytes.size())) != 0) state.SkipWithError("load");
  }
}

void loadBmp(benchmark::State& state) {
  const std::string name = inputs().folder / "p.bmp";
  for (auto _ : state) {
    TIppiImage image(static_cast<TIppiImageMode>(state.range(0)));
    if (image.LoadFromFile(name.c_str()) != 0) state.SkipWithError("load");
  }
}

void saveJpeg(benchmark::State& state) {
  TIppiImage& image = const_cast<TIppiImage&>(inputs().image);
  const std::string name = inputs().folder / "out";
  for (auto _ : state) {
    if (image.SaveToJpegFile(name.c_str(), 0) != 0) state.SkipWithError("save");
  }
}

void saveBmp(benchmark::State& state) {
  TIppiImage& image = const_cast<TIppiImage&>(inputs().image);
  const std::string name = inputs().folder / "out";
  for (auto _ : state) {
    if (image.SaveToFile(name.c_str()) != 0) state.SkipWithError("save");
  }
}

BENCHMARK(bareLibjpeg)->Name("jpeg12M/libjpeg alone")->Unit(benchmark::kMillisecond);
BENCHMARK(loadJpeg)->Name("jpeg12M/load")->ArgName("mode")->DenseRange(0, 2)->Unit(benchmark::kMillisecond);
BENCHMARK(loadJpegFile)->Name("jpeg12M/load file")->Unit(benchmark::kMillisecond);
BENCHMARK(saveJpeg)->Name("jpeg12M/save")->Unit(benchmark::kMillisecond);
BENCHMARK(bareLibpng)->Name("png12M/libpng alone")->Unit(benchmark::kMillisecond);
BENCHMARK(loadPng)->Name("png12M/load")->ArgName("mode")->DenseRange(0, 2)->Unit(benchmark::kMillisecond);
BENCHMARK(loadBmp)->Name("bmp12M/load file")->ArgName("mode")->DenseRange(0, 2)->Unit(benchmark::kMillisecond);
BENCHMARK(saveBmp)->Name("bmp12M/save")->Unit(benchmark::kMillisecond);

}  // namespace
