#include "bench/subject.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <stdexcept>

#include "bench/pictures.h"

namespace {

void toImage(const BenchPicture& picture, TIppiImage& image) {
  image.Mode = picture.channels == 3 ? imRGB24 : imGray8;
  image.AllocNew(picture.width, picture.height);
  for (int y = 0; y < picture.height; ++y) {
    const auto* from = picture.samples.data() + static_cast<std::ptrdiff_t>(y) * picture.step();
    std::memcpy(image.Pixels + static_cast<std::ptrdiff_t>(picture.height - 1 - y) * image.Step, from,
                static_cast<std::size_t>(picture.step()));
  }
}

bool loadFile(const std::string& file, TIppiImage& image) {
  if (!std::filesystem::exists(file)) return false;
  const bool png = file.ends_with(".png");
  return (png ? image.LoadFromPngFile(file.c_str()) : image.LoadFromJpegFile(file.c_str())) == 0;
}

// The middle of `source`, scaled to cover the given size.
void coverSize(TIppiImage& source, int width, int height, TIppiImage& dest) {
  const double ratio = std::max((width + 1.0) / source.Width, (height + 1.0) / source.Height);
  TIppiImage scaled;
  source.Resize(scaled, ratio);
  const int x = (scaled.Width - width) / 2;
  const int y = (scaled.Height - height) / 2;
  scaled.CopyTo(dest, x, y, x + width - 1, y + height - 1);
}

// Enlarged pictures are smoother than photos and would decode too fast: adds noise of about four gray levels.
void addNoise(TIppiImage& image) {
  std::uint32_t state = 12345;
  for (int y = 0; y < image.Height; ++y) {
    unsigned char* row = image.Pixels + static_cast<std::ptrdiff_t>(y) * image.Step;
    for (int x = 0; x < image.Width; ++x) {
      state = state * 1664525u + 1013904223u;
      const int noise = static_cast<int>((state >> 24) & 15u) - 8;
      for (int k = 0; k < 3; ++k) {
        row[3 * x + k] = static_cast<unsigned char>(std::clamp(row[3 * x + k] + noise, 0, 255));
      }
    }
  }
}

void makeColor(TIppiImage& color) {
  TIppiImage source(imRGB24);
  const char* named = std::getenv("PORTRAITCUT_BENCH_PICTURE");
  const std::string file = named != nullptr ? named : PORTRAITCUT_TEST_DATA "/average_faces.png";
  if (loadFile(file, source)) {
    coverSize(source, BenchSubject::kWidth, BenchSubject::kHeight, color);
    if (source.Width < BenchSubject::kWidth) addNoise(color);
  } else if (named != nullptr) {
    throw std::runtime_error("cannot load " + file);
  } else {
    toImage(makeColorPicture(BenchSubject::kWidth, BenchSubject::kHeight), color);
  }
}

}  // namespace

std::string temporaryFile(const std::string& ending) {
  const auto folder = std::filesystem::temp_directory_path();
  return (folder / ("portraitcut_bench_" + std::to_string(getpid()) + ending)).string();
}

BenchSubject& BenchSubject::instance() {
  static BenchSubject subject;
  return subject;
}

BenchSubject::BenchSubject() : jpegFile(temporaryFile("_subject.jpg")) {
  makeColor(color);
  gray.CopyFrom(color);
  color.Resize(colorQuarter, 0.25);
  gray.Resize(grayQuarter, 0.25);
  coverSize(gray, 384, 256, working);
  toImage(makeGrayPicture(384, 256), texture);
  if (color.SaveToJpegFile(jpegFile.c_str(), 0) != 0) throw std::runtime_error("cannot write " + jpegFile);
}

BenchSubject::~BenchSubject() {
  std::error_code ignored;
  std::filesystem::remove(jpegFile, ignored);
}
