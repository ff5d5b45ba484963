// Plain shapes in pixels of the upright picture; (0, 0) is its top left pixel, y grows downwards.
#ifndef APPS_PORTRAITCUT_GEOMETRY_H
#define APPS_PORTRAITCUT_GEOMETRY_H

#include <cstdint>

struct Size {
  int32_t width = 0;
  int32_t height = 0;
};

struct Spot {
  double x = 0;
  double y = 0;
};

// Inclusive corners; may reach beyond the picture.
struct Frame {
  int32_t x1 = 0;
  int32_t y1 = 0;
  int32_t x2 = 0;
  int32_t y2 = 0;

  int64_t width() const { return int64_t{x2} - x1 + 1; }
  int64_t height() const { return int64_t{y2} - y1 + 1; }
  bool inside(Size size) const { return x1 >= 0 && y1 >= 0 && x2 < size.width && y2 < size.height; }
};

struct Colour {
  uint8_t red = 255;
  uint8_t green = 255;
  uint8_t blue = 255;
};

#endif
