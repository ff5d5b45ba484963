#include "image/TIppiImage.h"
#include "primitives/ippi.h"

void TIppiImage::Assign(TIppiImage& src) {
  if (&src == this) {
    TIppiImage copy(Mode);
    copy.Assign(src);
    Swap(copy);
    return;
  }
  FreeImage();
  Mode = src.Mode;
  AllocNew(src.Width, src.Height);
  src.CopyTo(*this, 0, 0, src.Width - 1, src.Height - 1, true);
}

void TIppiImage::CopyFrom(TIppiImage& src) {
  if (src.Mode == Mode) {
    Assign(src);
    return;
  }
  FreeImage();
  if (Mode == imGray8 && (src.Mode == imRGB24 || src.Mode == imRGBA32) && src.Pixels != nullptr) {
    AllocToFill(src.Width, src.Height);
    const auto convert = src.Mode == imRGB24 ? ippiRGBToGray_8u_C3C1R : ippiRGBToGray_8u_AC4C1R;
    convert(src.Pixels, src.Step, Pixels, Step, RoiSize);
    return;
  }
  AllocNew(src.Width, src.Height);
  if (Mode == imGray32f && src.Mode == imGray8) {
    ippiConvert_8u32f_C1R(src.Pixels, src.Step, PixelsF, Step, RoiSize);
  } else if (Mode == imRGB32f && src.Mode == imRGB24) {
    ippiConvert_8u32f_C3R(src.Pixels, src.Step, PixelsF, Step, RoiSize);
  } else if (Mode == imRGBA32f && src.Mode == imRGBA32) {
    ippiConvert_8u32f_C4R(src.Pixels, src.Step, PixelsF, Step, RoiSize);
  }
}
