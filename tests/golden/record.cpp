#include "record.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace {

std::string hexFloat(double value) {
  char text[64];
  std::snprintf(text, sizeof text, "%a", value);
  return text;
}

// FNV-1a with 64 bits.
std::string hashOf(const std::vector<unsigned char>& bytes) {
  std::uint64_t hash = 0xcbf29ce484222325u;
  for (const unsigned char byte : bytes) hash = (hash ^ byte) * 0x100000001b3u;
  char text[32];
  std::snprintf(text, sizeof text, "%016llx", static_cast<unsigned long long>(hash));
  return text;
}

}  // namespace

void require(int32_t code, const char* call) {
  if (code == VIZLE_OK) return;
  std::fprintf(stderr, "%s: code %d\n", call, static_cast<int>(code));
  std::exit(EXIT_FAILURE);
}

void TRecord::AddFace(const std::string& name, const TFacePosition& face) {
  Add(name, std::to_string(face.xc) + " " + std::to_string(face.yc) + " " + std::to_string(face.w) + " " +
                hexFloat(face.angle));
}

void TRecord::AddPoints(const std::string& name, const TPoint (&points)[40], int count) {
  std::string text;
  for (int i = 0; i < count; ++i) {
    if (i > 0) text += ' ';
    text += std::to_string(points[i].x) + "," + std::to_string(points[i].y);
  }
  Add(name, text);
}

void TRecord::AddConfidences(const std::string& name, const float (&confidences)[40]) {
  std::string text;
  for (const float value : confidences) {
    if (!text.empty()) text += ' ';
    text += hexFloat(static_cast<double>(value));
  }
  Add(name, text);
}

void TRecord::AddImageAndFree(const std::string& name, HImage image) {
  int32_t width, height, size;
  require(VIZL_GetImageWidth(image, &width), "VIZL_GetImageWidth");
  require(VIZL_GetImageHeight(image, &height), "VIZL_GetImageHeight");
  require(VIZL_GetImageBufferSize(image, &size, VIZL_IMAGE_COLOR32), "VIZL_GetImageBufferSize");
  std::vector<unsigned char> pixels(static_cast<std::size_t>(size));
  require(VIZL_SaveImageToBuffer(image, pixels.data(), VIZL_IMAGE_COLOR32), "VIZL_SaveImageToBuffer");
  require(VIZL_FreeImage(image), "VIZL_FreeImage");
  Add(name, std::to_string(width) + "x" + std::to_string(height) + " " + hashOf(pixels));
}
