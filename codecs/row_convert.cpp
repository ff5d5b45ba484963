#include "codecs/row_convert.h"

#include "primitives/ippi.h"

namespace {

void grayRows(const DecodedRows& rows, TIppiImageMode mode, Ipp8u* dst, int dstStep, IppiSize roi) {
  const Ipp8u* const planes[4] = {rows.data, rows.data, rows.data, rows.data};
  if (mode == imGray8) ippiCopy_8u_C1R(rows.data, rows.step, dst, dstStep, roi);
  if (mode == imRGB24) ippiCopy_8u_P3C3R(planes, rows.step, dst, dstStep, roi);
  if (mode == imRGBA32) {
    ippiCopy_8u_P4C4R(planes, rows.step, dst, dstStep, roi);
    ippiSet_8u_C4CR(255, dst + 3, dstStep, roi);
  }
}

void colourRows(const DecodedRows& rows, TIppiImageMode mode, Ipp8u* dst, int dstStep, IppiSize roi) {
  if (mode == imGray8) ippiRGBToGray_8u_C3C1R(rows.data, rows.step, dst, dstStep, roi);
  if (mode == imRGB24) ippiCopy_8u_C3R(rows.data, rows.step, dst, dstStep, roi);
  if (mode == imRGBA32) ippiCopy_8u_C3AC4R(rows.data, rows.step, dst, dstStep, roi);
}

void alphaRows(const DecodedRows& rows, TIppiImageMode mode, Ipp8u* dst, int dstStep, IppiSize roi, bool takeAlpha) {
  if (mode == imGray8) ippiRGBToGray_8u_AC4C1R(rows.data, rows.step, dst, dstStep, roi);
  if (mode == imRGB24) ippiCopy_8u_AC4C3R(rows.data, rows.step, dst, dstStep, roi);
  if (mode == imRGBA32) (takeAlpha ? ippiCopy_8u_C4R : ippiCopy_8u_AC4R)(rows.data, rows.step, dst, dstStep, roi);
}

}  // namespace

void convertRows(const DecodedRows& rows, TIppiImage& image, int y, bool takeAlpha) {
  Ipp8u* const dst = pictureRow(image, y);
  const IppiSize roi = {image.Width, rows.count};
  // The buffer holds the bottom row first, so picture rows go backwards in it.
  const int dstStep = -image.Step;
  if (rows.channels == 1) grayRows(rows, image.Mode, dst, dstStep, roi);
  if (rows.channels == 3) colourRows(rows, image.Mode, dst, dstStep, roi);
  if (rows.channels == 4) alphaRows(rows, image.Mode, dst, dstStep, roi, takeAlpha);
}
