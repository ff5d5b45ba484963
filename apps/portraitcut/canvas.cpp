#include "canvas.h"

#include <algorithm>
#include <cmath>

Canvas::Canvas(const Picture& picture) {
  const PixelView view = viewOf(picture);
  size_ = view.size;
  pen_ = 1 + (size_.width + size_.height) / 700;
  const size_t rowBytes = 3 * static_cast<size_t>(size_.width);
  pixels_.reserve(rowBytes * static_cast<size_t>(size_.height));
  for (int32_t y = 0; y < size_.height; ++y) pixels_.insert(pixels_.end(), view.row(y), view.row(y) + rowBytes);
}

void Canvas::dab(Spot at, int32_t side, Colour colour) {
  const double left = std::floor(at.x) - side / 2;
  const double top = std::floor(at.y) - side / 2;
  const auto x1 = static_cast<int32_t>(std::clamp<double>(left, 0, size_.width));
  const auto y1 = static_cast<int32_t>(std::clamp<double>(top, 0, size_.height));
  const auto x2 = static_cast<int32_t>(std::clamp<double>(left + side, 0, size_.width));
  const auto y2 = static_cast<int32_t>(std::clamp<double>(top + side, 0, size_.height));
  for (int32_t y = y1; y < y2; ++y) {
    unsigned char* pixel = pixels_.data() + 3 * (ptrdiff_t{y} * size_.width + x1);
    for (int32_t x = x1; x < x2; ++x, pixel += 3) {
      pixel[0] = colour.red;
      pixel[1] = colour.green;
      pixel[2] = colour.blue;
    }
  }
}

void Canvas::drawLine(Spot from, Spot to, Colour colour) {
  const int steps = 1 + static_cast<int>(std::max(std::abs(to.x - from.x), std::abs(to.y - from.y)));
  for (int k = 0; k <= steps; ++k) {
    const double share = static_cast<double>(k) / steps;
    dab({from.x + share * (to.x - from.x), from.y + share * (to.y - from.y)}, pen_, colour);
  }
}

void Canvas::drawOutline(const std::vector<Spot>& corners, Colour colour) {
  for (size_t k = 0; k < corners.size(); ++k) drawLine(corners[k], corners[(k + 1) % corners.size()], colour);
}
