#include "training/evaluation/detection.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include "api/vizl_api.h"
#include "detect/TIppiFaceDetector.h"
#include "image/TIppiImage.h"

namespace evaluation {

namespace {

std::string lowerCaseExtension(const std::string& file) {
  const std::size_t dot = file.rfind('.');
  std::string extension = dot == std::string::npos ? "" : file.substr(dot + 1);
  std::transform(extension.begin(), extension.end(), extension.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return extension;
}

int loadByExtension(const std::string& file, TIppiImage& image) {
  const std::string extension = lowerCaseExtension(file);
  if (extension == "png") return image.LoadFromPngFile(file.c_str());
  if (extension == "bmp") return image.LoadFromFile(file.c_str());
  return image.LoadFromJpegFile(file.c_str());
}

}  // namespace

std::unique_ptr<TIppiFaceDetector> openCascade(const std::string& file) {
  if (file.empty()) return std::make_unique<TIppiFaceDetector>();
  std::ifstream in(file, std::ios::binary);
  const std::vector<char> bytes{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
  if (bytes.empty()) throw std::runtime_error("cannot read " + file);
  return std::make_unique<TIppiFaceDetector>(reinterpret_cast<const unsigned char*>(bytes.data()),
                                             static_cast<unsigned>(bytes.size()));
}

void loadGray(const std::string& file, TIppiImage& gray) {
  TIppiImage color(imRGB24);
  if (loadByExtension(file, color) != 0 || !color.Pixels) throw std::runtime_error("cannot load " + file);
  gray.Mode = imGray8;
  gray.CopyFrom(color);
}

Search detectAll(TIppiFaceDetector& detector, TIppiImage& gray) {
  std::array<TFacePosition, 512> records{};
  int count = 0;
  const auto start = std::chrono::steady_clock::now();
  detector.DetectMultipleFaces(gray, nullptr, count, records.data(), static_cast<int>(sizeof(records)), 0);
  const std::chrono::duration<double, std::milli> spent = std::chrono::steady_clock::now() - start;
  Search search{{}, spent.count()};
  for (int i = 0; i < count; ++i) {
    const TFacePosition& face = records[static_cast<std::size_t>(i)];
    search.faces.push_back(
        {static_cast<double>(face.xc), static_cast<double>(face.yc), static_cast<double>(face.w), face.angle});
  }
  return search;
}

}  // namespace evaluation
