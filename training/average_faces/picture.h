// A colour picture in floats, for sums of many pictures. Rows count from the top.
#pragma once

#include <array>
#include <string>
#include <vector>

using Colour = std::array<float, 3>;  // red, green, blue, 0 to 255

struct Picture {
  int width = 0;
  int height = 0;
  std::vector<Colour> pixels;

  Picture() = default;
  Picture(int w, int h) : width(w), height(h), pixels(static_cast<std::size_t>(w) * static_cast<std::size_t>(h)) {}
  Colour& at(int x, int y) {
    return pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x)];
  }
  const Colour& at(int x, int y) const {
    return pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x)];
  }
};

// Bilinear; beyond the border the nearest pixel counts. Pixel centres have whole coordinates.
Colour sample(const Picture& picture, double x, double y);

// Throws std::runtime_error when the file can't be loaded. VIZL_Initialize has to have run, for saving too.
Picture loadJpeg(const std::string& file);
// The name's ending decides: "png", else JPEG.
void savePicture(const Picture& picture, const std::string& file);
