#include "training/average_faces/picture.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "image/TIppiImage.h"

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
  TIppiImage image(imRGB24);
  if (image.LoadFromJpegFile(file.c_str()) != 0) throw std::runtime_error("cannot decode " + file);
  Picture picture(image.Width, image.Height);
  for (int y = 0; y < image.Height; ++y) {
    const unsigned char* row = image.Pixels + static_cast<std::ptrdiff_t>(image.Height - 1 - y) * image.Step;
    for (int x = 0; x < image.Width; ++x, row += 3) {
      picture.at(x, y) = {static_cast<float>(row[0]), static_cast<float>(row[1]), static_cast<float>(row[2])};
    }
  }
  return picture;
}

void savePicture(const Picture& picture, const std::string& file) {
  TIppiImage image(imRGB24);
  image.AllocNew(picture.width, picture.height);
  for (int y = 0; y < image.Height; ++y) {
    unsigned char* row = image.Pixels + static_cast<std::ptrdiff_t>(image.Height - 1 - y) * image.Step;
    for (int x = 0; x < image.Width; ++x) {
      for (const float value : picture.at(x, y)) {
        *row++ = static_cast<unsigned char>(std::clamp(std::lround(value), 0L, 255L));
      }
    }
  }
  const int code = file.ends_with("png") ? image.SaveToPngFile(file.c_str()) : image.SaveToJpegFile(file.c_str(), 0);
  if (code != 0) throw std::runtime_error("cannot write " + file);
}
