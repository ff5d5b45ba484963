#include "training/eyes/eye_frames.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <type_traits>

#include "api/vizl_api.h"
#include "eyes/eye_window.h"
#include "features/crop_face_adjust_features.h"
#include "image/TIppiImage.h"

static_assert(std::is_trivially_copyable_v<EyeFrame>);

namespace {

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

File openFile(const std::string& name, const char* mode) {
  File file(std::fopen(name.c_str(), mode));
  if (!file) throw std::runtime_error("cannot open " + name);
  return file;
}

}  // namespace

void EyeFrame::toImage(TIppiImage& image) const {
  image.Mode = imGray8;
  image.AllocNew(kEyeFrameSide, kEyeFrameSide);
  for (int y = 0; y < kEyeFrameSide; ++y) {
    std::copy_n(pixels.data() + y * kEyeFrameSide, kEyeFrameSide,
                image.Pixels + static_cast<std::ptrdiff_t>(kEyeFrameSide - 1 - y) * image.Step);
  }
}

EyeFrame cutEyeFrame(TIppiImage& gray, const std::array<LabelledPoint, 2>& eyes, const TFacePosition& face) {
  TIppiImage crop(imGray8);
  crop.CopyFrom(gray);
  float scale = 0;
  int left = 0, top = 0;
  if (CropFaceAdjustFeatures(&crop, face, kEyeFrameSide, nullptr, 0, &scale, &left, &top) != VIZLE_OK) {
    throw std::runtime_error("a face cannot be cropped");
  }
  EyeFrame frame;
  for (int y = 0; y < kEyeFrameSide; ++y) {
    std::copy_n(crop.Pixels + static_cast<std::ptrdiff_t>(kEyeFrameSide - 1 - y) * crop.Step, kEyeFrameSide,
                frame.pixels.data() + y * kEyeFrameSide);
  }
  // A pixel of the crop covers 1 / scale pixels of the picture, and pixels count from their centres.
  for (std::size_t i = 0; i < 2; ++i) {
    const double s = static_cast<double>(scale);
    frame.eyes[i] = {(eyes[i].x - left + 0.5) * s - 0.5, (eyes[i].y - top + 0.5) * s - 0.5};
  }
  return frame;
}

void writeEyeFrames(const std::string& name, const std::vector<EyeFrame>& frames) {
  const File file = openFile(name, "wb");
  const std::size_t written = std::fwrite(frames.data(), sizeof(EyeFrame), frames.size(), file.get());
  if (written != frames.size() || std::fflush(file.get()) != 0) throw std::runtime_error("cannot write " + name);
}

std::vector<EyeFrame> readEyeFrames(const std::string& name) {
  const File file = openFile(name, "rb");
  std::vector<EyeFrame> frames(std::filesystem::file_size(name) / sizeof(EyeFrame));
  const std::size_t read = std::fread(frames.data(), sizeof(EyeFrame), frames.size(), file.get());
  if (read != frames.size() || frames.empty()) throw std::runtime_error("cannot read " + name);
  return frames;
}
