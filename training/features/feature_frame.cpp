#include "training/features/feature_frame.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <type_traits>

#include "features/face_image.h"
#include "training/features/forehead_labels.h"

static_assert(std::is_trivially_copyable_v<FeatureFrame> && kFrameSide == kFaceImageSide);

namespace {

std::uint8_t* rowOf(const TIppiImage& image, int y) {
  return image.Pixels + static_cast<std::ptrdiff_t>(image.Height - 1 - y) * image.Step;
}

}  // namespace

// TFaceImage counts from the middle of the first pixel.
bool cutFeatureFrame(evaluation::FaceView& view, const TFacePosition& place, FeatureFrame& frame) {
  TFaceImage face;
  if (face.Cut(view.picture, place) != VIZLE_OK) return false;
  for (int y = 0; y < kFrameSide; ++y) std::copy_n(rowOf(face.Face, y), kFrameSide, &frame.pixels[y * kFrameSide]);
  for (std::size_t n = 0; n < 40; ++n) {
    const LabelledPoint& label = view.points[n];
    const TSPoint point = face.PointInFace({static_cast<float>(label.x - 0.5), static_cast<float>(label.y - 0.5)});
    frame.points[2 * n] = point.x + 0.5f;
    frame.points[2 * n + 1] = point.y + 0.5f;
  }
  placeForehead(frame.points);
  return true;
}

double pupilDistance(const FeatureFrame& frame) {
  return std::hypot(frame.points[2] - frame.points[0], frame.points[3] - frame.points[1]);
}

void toImage(const FeatureFrame& frame, TIppiImage& image) {
  image.Mode = imGray8;
  image.AllocNew(kFrameSide, kFrameSide);
  for (int y = 0; y < kFrameSide; ++y) std::copy_n(&frame.pixels[y * kFrameSide], kFrameSide, rowOf(image, y));
}

void writeFeatureFrames(const std::string& file, const std::vector<FeatureFrame>& frames) {
  std::ofstream out(file, std::ios::binary);
  out.write(reinterpret_cast<const char*>(frames.data()),
            static_cast<std::streamsize>(frames.size() * sizeof(FeatureFrame)));
  if (!out.flush()) throw std::runtime_error("cannot write " + file);
}

std::vector<FeatureFrame> readFeatureFrames(const std::string& file) {
  std::error_code error;
  const auto size = std::filesystem::file_size(file, error);
  if (error || size == 0 || size % sizeof(FeatureFrame) != 0) throw std::runtime_error("no frames: " + file);
  std::vector<FeatureFrame> frames(size / sizeof(FeatureFrame));
  std::ifstream in(file, std::ios::binary);
  in.read(reinterpret_cast<char*>(frames.data()), static_cast<std::streamsize>(size));
  if (!in) throw std::runtime_error("cannot read " + file);
  return frames;
}
