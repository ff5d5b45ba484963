// A picture to draw on.
#ifndef APPS_PORTRAITCUT_CANVAS_H
#define APPS_PORTRAITCUT_CANVAS_H

#include <vector>

#include "geometry.h"
#include "picture.h"

class Canvas {
 public:
  // A copy of the picture; lines are as wide as suits its size.
  explicit Canvas(const Picture& picture);

  void drawLine(Spot from, Spot to, Colour colour);
  void drawOutline(const std::vector<Spot>& corners, Colour colour);
  // A square twice as wide as a line.
  void drawDot(Spot at, Colour colour) { dab(at, 2 * pen_, colour); }

  Picture picture() const { return Picture::fromPixels(pixels_, size_); }

 private:
  void dab(Spot at, int32_t side, Colour colour);

  Size size_;
  int32_t pen_;  // pixels
  std::vector<unsigned char> pixels_;
};

#endif
