#include "api/pixel_buffer.h"

#include <cstddef>

#include "image/TIppiImage.h"
#include "primitives/ippi.h"

namespace {

bool hasPixels(const TIppiImage& image) { return image.Pixels != nullptr && image.Width > 0 && image.Height > 0; }

// The picture's top row, which is the last one of the image's buffer. With the negated Step the rows are met from
// the top down, so one pass both copies and turns the row order over.
unsigned char* topRow(const TIppiImage& image) {
  return image.Pixels + static_cast<std::ptrdiff_t>(image.Height - 1) * image.Step;
}

int channelsOf(VIZL_IMAGEMODE mode) {
  if (mode == VIZL_IMAGE_GRAY8) return 1;
  return mode == VIZL_IMAGE_COLOR32 ? 4 : 3;
}

void writeGray(const TIppiImage& image, unsigned char* buffer, int step) {
  const Ipp32f weights[3] = {0.299f, 0.587f, 0.114f};
  const unsigned char* top = topRow(image);
  if (image.Mode == imGray8) ippiCopy_8u_C1R(top, -image.Step, buffer, step, image.RoiSize);
  if (image.Mode == imRGB24) ippiColorToGray_8u_C3C1R(top, -image.Step, buffer, step, image.RoiSize, weights);
  if (image.Mode == imRGBA32) ippiColorToGray_8u_AC4C1R(top, -image.Step, buffer, step, image.RoiSize, weights);
}

void writeColor24(const TIppiImage& image, unsigned char* buffer, int step) {
  const unsigned char* top = topRow(image);
  const unsigned char* const planes[3] = {top, top, top};
  if (image.Mode == imGray8) ippiCopy_8u_P3C3R(planes, -image.Step, buffer, step, image.RoiSize);
  if (image.Mode == imRGB24) ippiCopy_8u_C3R(top, -image.Step, buffer, step, image.RoiSize);
  if (image.Mode == imRGBA32) ippiCopy_8u_AC4C3R(top, -image.Step, buffer, step, image.RoiSize);
}

void writeColor32(const TIppiImage& image, unsigned char* buffer, int step) {
  const unsigned char* top = topRow(image);
  const unsigned char* const planes[4] = {top, top, top, top};
  if (image.Mode == imGray8) ippiCopy_8u_P4C4R(planes, -image.Step, buffer, step, image.RoiSize);
  if (image.Mode == imRGB24) ippiCopy_8u_C3AC4R(top, -image.Step, buffer, step, image.RoiSize);
  if (image.Mode == imRGBA32) {
    ippiCopy_8u_C4R(top, -image.Step, buffer, step, image.RoiSize);
  } else {
    ippiSet_8u_C4CR(255, buffer + 3, step, image.RoiSize);
  }
}

}  // namespace

void FillFromBuffer(TIppiImage& image, const unsigned char* buffer, int width, int height, int scanLine,
                    VIZL_IMAGEMODE mode) {
  image.Mode = mode == VIZL_IMAGE_COLOR32 ? imRGBA32 : imRGB24;
  image.AllocNew(width, height);
  if (!hasPixels(image)) return;
  unsigned char* top = topRow(image);
  if (mode == VIZL_IMAGE_GRAY8) {
    const unsigned char* const planes[3] = {buffer, buffer, buffer};
    ippiCopy_8u_P3C3R(planes, scanLine, top, -image.Step, image.RoiSize);
  } else if (mode == VIZL_IMAGE_COLOR32) {
    ippiCopy_8u_C4R(buffer, scanLine, top, -image.Step, image.RoiSize);
  } else {
    ippiCopy_8u_C3R(buffer, scanLine, top, -image.Step, image.RoiSize);
  }
}

int64_t BufferSize(const TIppiImage& image, VIZL_IMAGEMODE mode) {
  return static_cast<int64_t>(image.Width) * image.Height * channelsOf(mode);
}

void WriteToBuffer(const TIppiImage& image, unsigned char* buffer, VIZL_IMAGEMODE mode) {
  if (!hasPixels(image)) return;
  const int step = image.Width * channelsOf(mode);
  if (mode == VIZL_IMAGE_GRAY8) {
    writeGray(image, buffer, step);
  } else if (mode == VIZL_IMAGE_COLOR32) {
    writeColor32(image, buffer, step);
  } else {
    writeColor24(image, buffer, step);
  }
}
