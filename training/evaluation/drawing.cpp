#include "training/evaluation/drawing.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "image/TIppiImage.h"
#include "primitives/ippi.h"

namespace evaluation {

namespace {

// A pixel of the outline, two by two pixels so that it shows in large pictures.
void drawDot(TIppiImage& canvas, double x, double y, const Color& color) {
  for (int dy = 0; dy < 2; ++dy) {
    for (int dx = 0; dx < 2; ++dx) {
      const int column = static_cast<int>(std::lround(x)) + dx;
      const int row = canvas.Height - 1 - (static_cast<int>(std::lround(y)) + dy);
      if (column < 0 || row < 0 || column >= canvas.Width || row >= canvas.Height) continue;
      const std::ptrdiff_t offset = static_cast<std::ptrdiff_t>(row) * canvas.Step + 3 * column;
      std::copy(color.begin(), color.end(), canvas.Pixels + offset);
    }
  }
}

// The point at (right, down) from the centre in the square's own frame, in units of half its side.
LabelledPoint pointOf(const FaceSquare& square, double right, double down) {
  const double c = std::cos(square.roll * std::numbers::pi / 180) * square.w / 2;
  const double s = std::sin(square.roll * std::numbers::pi / 180) * square.w / 2;
  return {square.xc + right * c - down * s, square.yc + right * s + down * c};
}

}  // namespace

void colorCanvas(TIppiImage& gray, TIppiImage& canvas) {
  canvas.Mode = imRGB24;
  canvas.AllocNew(gray.Width, gray.Height);
  const Ipp8u* const planes[3] = {gray.Pixels, gray.Pixels, gray.Pixels};
  ippiCopy_8u_P3C3R(planes, gray.Step, canvas.Pixels, canvas.Step, canvas.RoiSize);
}

void drawLine(TIppiImage& canvas, LabelledPoint from, LabelledPoint to, const Color& color) {
  const int steps = static_cast<int>(std::max(std::abs(to.x - from.x), std::abs(to.y - from.y))) + 1;
  for (int i = 0; i <= steps; ++i) {
    const double t = static_cast<double>(i) / steps;
    drawDot(canvas, from.x + t * (to.x - from.x), from.y + t * (to.y - from.y), color);
  }
}

void drawSquare(TIppiImage& canvas, const FaceSquare& square, const Color& color) {
  const LabelledPoint corners[] = {pointOf(square, -1, -1), pointOf(square, 1, -1), pointOf(square, 1, 1),
                                   pointOf(square, -1, 1)};
  for (std::size_t i = 0; i < 4; ++i) drawLine(canvas, corners[i], corners[(i + 1) % 4], color);
  drawLine(canvas, pointOf(square, 0, -1), pointOf(square, 0, -0.8), color);
}

}  // namespace evaluation
