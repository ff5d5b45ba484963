#include <cmath>

#include "image/TIppiImage.h"
#include "primitives/ippi.h"

namespace {

// Turns `src` into `dest`, another image, about a point in coordinates of the buffer. In the float modes,
// and for angles and points that are no numbers, `dest` stays as allocated.
void turn(const TIppiImage& src, TIppiImage& dest, double angle, double xCenter, double yCenter) {
  dest.FreeImage();
  dest.Mode = src.Mode;
  dest.AllocNew(src.Width, src.Height);
  if (!std::isfinite(angle) || !std::isfinite(xCenter) || !std::isfinite(yCenter)) return;

  const IppiRect whole = {0, 0, src.Width, src.Height};
  const auto run = [&](auto primitive) {
    primitive(src.Pixels, src.RoiSize, src.Step, whole, dest.Pixels, dest.Step, whole, angle, xCenter, yCenter,
              IPPI_INTER_LINEAR | IPPI_SMOOTH_EDGE);
  };
  if (src.Mode == imGray8) run(ippiRotateCenter_8u_C1R);
  if (src.Mode == imRGB24) run(ippiRotateCenter_8u_C3R);
  if (src.Mode == imRGBA32) run(ippiRotateCenter_8u_C4R);
}

void turnMaybeInPlace(TIppiImage& src, TIppiImage& dest, double angle, double xCenter, double yCenter) {
  if (&dest != &src) return turn(src, dest, angle, xCenter, yCenter);
  TIppiImage turned;
  turn(src, turned, angle, xCenter, yCenter);
  dest.Swap(turned);
}

}  // namespace

// The middle is that of the buffer: for an even height one row off the middle counted from the top.
void TIppiImage::Rotate(TIppiImage& dest, double angle) {
  const int xCenter = Width / 2;
  const int yCenter = Height / 2;
  turnMaybeInPlace(*this, dest, angle, xCenter, yCenter);
}

void TIppiImage::RotateCenter(TIppiImage& dest, double angle, double xCenter, double yCenter) {
  turnMaybeInPlace(*this, dest, angle, xCenter, (Height - 1) - yCenter);
}
