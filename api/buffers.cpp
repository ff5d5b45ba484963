// Raw pixels into handles and out of them.
#include <limits>

#include "api/exported.h"
#include "api/handles.h"
#include "api/pixel_buffer.h"

namespace {

VIZL_IMAGEMODE bufferModeOf(TIppiImageMode mode) {
  if (mode == imRGB24) return VIZL_IMAGE_COLOR24;
  return mode == imRGBA32 ? VIZL_IMAGE_COLOR32 : VIZL_IMAGE_GRAY8;
}

// An image of three channels can be too large for a buffer of four whose size is told in 32 bits.
bool fitsBuffer(const TIppiImage& image, VIZL_IMAGEMODE mode) {
  return BufferSize(image, mode) <= std::numeric_limits<int32_t>::max();
}

int32_t getSide(HImage image, int32_t* side, int TIppiImage::*field) {
  return Exported([=] {
    TImagesLookup lookup;
    const ippiImgStruct* record = lookup.Find(image);
    if (record == nullptr || side == nullptr) return VIZLE_INVALID_ARGUMENT;
    *side = record->Image->*field;
    return VIZLE_OK;
  });
}

}  // namespace

int32_t VIZL_LoadImageFromBuffer(HImage* handle, const unsigned char* buffer, int32_t width, int32_t height,
                                 int32_t scanLine, VIZL_IMAGEMODE mode) {
  return Exported([=] {
    if (buffer == nullptr) return VIZLE_INVALID_ARGUMENT;
    ippiImgStruct* record = NewImage(handle);
    if (record == nullptr) return VIZLE_INVALID_ARGUMENT;
    FillFromBuffer(*record->Image, buffer, width, height, scanLine, mode);
    return VIZLE_OK;
  });
}

int32_t VIZL_AssignImageFromBuffer(HImage image, const unsigned char* buffer, int32_t width, int32_t height,
                                   int32_t scanLine, VIZL_IMAGEMODE mode) {
  return Exported([=] {
    ippiImgStruct* record = FindImage(image);
    if (record == nullptr || buffer == nullptr) return VIZLE_INVALID_ARGUMENT;
    ReplaceImage(*record, [=](TIppiImage& fresh) { FillFromBuffer(fresh, buffer, width, height, scanLine, mode); });
    return VIZLE_OK;
  });
}

int32_t VIZL_GetImageBufferSize(HImage image, int32_t* size, VIZL_IMAGEMODE mode) {
  return Exported([=] {
    const ippiImgStruct* record = FindImage(image);
    if (record == nullptr || size == nullptr) return VIZLE_INVALID_ARGUMENT;
    if (!fitsBuffer(*record->Image, mode)) return VIZLE_INVALID_ARGUMENT;
    *size = static_cast<int32_t>(BufferSize(*record->Image, mode));
    return VIZLE_OK;
  });
}

int32_t VIZL_SaveImageToBuffer(HImage image, unsigned char* buffer, VIZL_IMAGEMODE mode) {
  return Exported([=] {
    const ippiImgStruct* record = FindImage(image);
    if (record == nullptr || buffer == nullptr) return VIZLE_INVALID_ARGUMENT;
    if (!fitsBuffer(*record->Image, mode)) return VIZLE_INVALID_ARGUMENT;
    WriteToBuffer(*record->Image, buffer, mode);
    return VIZLE_OK;
  });
}

int32_t VIZL_GetImageWidth(HImage image, int32_t* width) { return getSide(image, width, &TIppiImage::Width); }

int32_t VIZL_GetImageHeight(HImage image, int32_t* height) { return getSide(image, height, &TIppiImage::Height); }

int32_t VIZL_GetImageData(HImage image, unsigned char** data, int32_t* width, int32_t* height, int32_t* scanLine,
                          VIZL_IMAGEMODE* mode) {
  return Exported([=] {
    TImagesLookup lookup;
    const ippiImgStruct* record = lookup.Find(image);
    if (record == nullptr || data == nullptr || width == nullptr || height == nullptr || scanLine == nullptr ||
        mode == nullptr) {
      return VIZLE_INVALID_ARGUMENT;
    }
    const TIppiImage& pixels = *record->Image;
    *data = pixels.Pixels;
    *width = pixels.Width;
    *height = pixels.Height;
    *scanLine = pixels.Step;
    *mode = bufferModeOf(pixels.Mode);
    return VIZLE_OK;
  });
}
