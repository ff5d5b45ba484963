#include "training/average_faces/picture.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "api/vizl_api.h"

Colour sample(const Picture& picture, double x, double y) {
  x = std::clamp(x, 0.0, picture.width - 1.0);
  y = std::clamp(y, 0.0, picture.height - 1.0);
  const int left = std::min(static_cast<int>(x), picture.width - 2);
  const int top = std::min(static_cast<int>(y), picture.height - 2);
  const float fx = static_cast<float>(x - left);
  const float fy = static_cast<float>(y - top);
  Colour result;
  for (std::size_t c = 0; c < 3; ++c) {
    const float upper = std::lerp(picture.at(left, top)[c], picture.at(left + 1, top)[c], fx);
    const float lower = std::lerp(picture.at(left, top + 1)[c], picture.at(left + 1, top + 1)[c], fx);
    result[c] = std::lerp(upper, lower, fy);
  }
  return result;
}

Picture loadJpeg(const std::string& file) {
  HImage handle;
  if (VIZL_LoadImageFromFile(&handle, file.c_str()) != VIZLE_OK) throw std::runtime_error("cannot load " + file);
  int32_t width = 0;
  int32_t height = 0;
  VIZL_GetImageWidth(handle, &width);
  VIZL_GetImageHeight(handle, &height);
  Picture picture(width, height);
  std::vector<unsigned char> bytes(picture.pixels.size() * 3);
  VIZL_SaveImageToBuffer(handle, bytes.data(), VIZL_IMAGE_COLOR24);
  VIZL_FreeImage(handle);
  for (std::size_t k = 0; k < bytes.size(); ++k) picture.pixels[k / 3][k % 3] = bytes[k];
  return picture;
}

void savePicture(const Picture& picture, const std::string& file) {
  std::vector<unsigned char> bytes;
  for (const Colour& pixel : picture.pixels) {
    for (const float value : pixel)
      bytes.push_back(static_cast<unsigned char>(std::clamp(std::lround(value), 0L, 255L)));
  }
  HImage handle;
  int32_t code = VIZL_LoadImageFromBuffer(&handle, bytes.data(), picture.width, picture.height, 3 * picture.width,
                                          VIZL_IMAGE_COLOR24);
  if (code == VIZLE_OK) code = VIZL_SaveImageToFile(handle, file.c_str());
  VIZL_FreeImage(handle);
  if (code != VIZLE_OK) throw std::runtime_error("cannot write " + file);
}
