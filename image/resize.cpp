#include <cmath>
#include <stdexcept>

#include "image/TIppiImage.h"
#include "primitives/ippi.h"

namespace {

// A side as an int: negative values stay negative, too large ones stay above the limit.
int sideFromDouble(double side) {
  if (!std::isfinite(side)) throw std::length_error("image side is not a finite number");
  if (side < 0) return -1;
  if (side > kMaxImageSide) return kMaxImageSide + 1;
  return static_cast<int>(side);
}

// The subtraction makes a product that would be a whole number lose one pixel, for ratios up to 2.
int flooredSide(int side, double ratio) { return sideFromDouble(std::floor(side * (ratio - 2e-16))); }

// Halves go to the even number.
int roundedSide(int side, double ratio) { return sideFromDouble(std::nearbyint(side * ratio)); }

}  // namespace

void TIppiImage::Resize(TIppiImage& dest, double ratio) {
  Resize(dest, ratio, 0, ratio < 1.0 ? IPPI_INTER_SUPER : IPPI_INTER_LANCZOS);
}

void TIppiImage::Resize(TIppiImage& dest, double ratio, int unused, int interpolation) {
  if (&dest == this) {
    TIppiImage scaled;
    scaled.FloorResize = FloorResize;
    Resize(scaled, ratio, unused, interpolation);
    Swap(scaled);
    return;
  }
  dest.FreeImage();
  dest.Mode = Mode;
  const auto scaledSide = dest.FloorResize ? flooredSide : roundedSide;
  dest.AllocNew(scaledSide(Width, ratio), scaledSide(Height, ratio));

  const IppiRect whole = {0, 0, Width, Height};
  const auto run8u = [&](auto primitive) {
    primitive(Pixels, RoiSize, Step, whole, dest.Pixels, dest.Step, dest.RoiSize, ratio, ratio, interpolation);
  };
  const auto run32f = [&](auto primitive) {
    primitive(PixelsF, RoiSize, Step, whole, dest.PixelsF, dest.Step, dest.RoiSize, ratio, ratio, interpolation);
  };
  switch (Mode) {
    case imGray8:
      return run8u(ippiResize_8u_C1R);
    case imRGB24:
      return run8u(ippiResize_8u_C3R);
    case imRGBA32:
      return run8u(ippiResize_8u_C4R);
    case imGray32f:
      return run32f(ippiResize_32f_C1R);
    case imRGB32f:
      return run32f(ippiResize_32f_C3R);
    case imRGBA32f:
      return run32f(ippiResize_32f_C4R);
  }
}
