#include "training/average_faces/group_picture.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

constexpr double kEyeDistancePerSide = 0.394;  // eyes at 0.293 and 0.687 of the square's side

// 1 on head and neck, falling smoothly to 0 along an oval, and to 0 before the end of the frame.
double opacity(LabelledPoint p) {
  const double dx = (p.x - kFrameEyeMiddle.x) / kFrameEyeDistance;
  const double dy = (p.y - kFrameEyeMiddle.y) / kFrameEyeDistance - 0.35;
  const double radius = std::hypot(dx / 2.05, dy / 2.65);
  const double t = std::clamp((1.0 - radius) / 0.28, 0.0, 1.0);
  return t * t * (3.0 - 2.0 * t);
}

Picture ground(int width, int height) {
  constexpr Colour kTop{150, 166, 178};
  constexpr Colour kBottom{92, 110, 128};
  Picture picture(width, height);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      const float t = (static_cast<float>(y) / static_cast<float>(height) * 3.0F +
                       static_cast<float>(x) / static_cast<float>(width)) /
                      4.0F;
      for (std::size_t c = 0; c < 3; ++c) picture.at(x, y)[c] = std::lerp(kTop[c], kBottom[c], t);
    }
  }
  return picture;
}

Similarity placing(const Placement& place) {
  const double scale = place.w * kEyeDistancePerSide / kFrameEyeDistance;
  const std::complex<double> factor = std::polar(scale, place.tilt * std::numbers::pi / 180.0);
  const std::complex<double> middle(kFrameEyeMiddle.x, kFrameEyeMiddle.y);
  return {factor, std::complex<double>(place.x, place.y) - factor * middle};
}

// Mean of nine points of the pixel: the averages are only made smaller.
void blendPixel(Colour& pixel, const Picture& average, const Similarity& toFrame, int x, int y) {
  constexpr int kSide = 3;
  Colour sum{};
  double weight = 0;
  for (int k = 0; k < kSide * kSide; ++k) {
    const LabelledPoint p =
        toFrame({x + (k % kSide + 0.5) / kSide - 0.5, y + static_cast<double>(k / kSide + 0.5) / kSide - 0.5});
    const double share = opacity(p) / (kSide * kSide);
    if (share == 0) continue;
    const Colour colour = sample(average, p.x, p.y);
    for (std::size_t c = 0; c < 3; ++c) sum[c] += static_cast<float>(share) * colour[c];
    weight += share;
  }
  for (std::size_t c = 0; c < 3; ++c) pixel[c] = static_cast<float>(1.0 - weight) * pixel[c] + sum[c];
}

}  // namespace

Picture groupPicture(const std::vector<FaceAverage>& averages, const std::vector<Placement>& places, int width,
                     int height, std::vector<FaceLabel>& truth) {
  Picture picture = ground(width, height);
  for (std::size_t k = 0; k < places.size(); ++k) {
    const Similarity toPicture = placing(places[k]);
    const Similarity toFrame = toPicture.inverse();
    for (int y = 0; y < height; ++y) {
      for (int x = 0; x < width; ++x) blendPixel(picture.at(x, y), averages[k].picture, toFrame, x, y);
    }
    FaceLabel label{};
    for (std::size_t n = 0; n < label.nodes.size(); ++n) label.nodes[n] = toPicture(averages[k].shape[n]);
    truth.push_back(label);
  }
  return picture;
}
