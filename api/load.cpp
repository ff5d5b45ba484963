// Pictures from files and from compressed buffers into new handles.
#include "api/exported.h"
#include "api/file_format.h"
#include "api/handles.h"

namespace {

int32_t loadByFormat(TIppiImage& image, const char* fileName) {
  const auto code = [](int result) { return result == 0 ? VIZLE_OK : VIZLE_BAD_IMAGE_FILE; };
  switch (FileFormatOf(fileName)) {
    case TFileFormat::bmp:
      return code(image.LoadFromFile(fileName));
    case TFileFormat::jpeg:
      return code(image.LoadFromJpegFile(fileName));
    case TFileFormat::png:
      return code(image.LoadFromPngFile(fileName));
    default:
      return VIZLE_UNKNOWN_EXTENSION;
  }
}

// A load that fails keeps the handle: the caller has its number and frees it. The code tells whether there is one, so
// what decoding throws and what the making of the handle throws become different codes.
int32_t loadFile(HImage* handle, const char* fileName, TIppiImageMode mode) {
  return Exported([=] {
    if (fileName == nullptr) return VIZLE_INVALID_ARGUMENT;
    if (!CanOpenFile(fileName, "rbe")) return VIZLE_CANNOT_OPEN_FILE;
    ippiImgStruct* record = NewImage(handle);
    if (record == nullptr) return VIZLE_INVALID_ARGUMENT;
    record->Image->Mode = mode;
    return Exported([=] { return loadByFormat(*record->Image, fileName); }, VIZLE_BAD_IMAGE_FILE);
  });
}

using TBufferLoader = int (TIppiImage::*)(const unsigned char*, unsigned int);

int32_t loadBuffer(HImage* handle, const unsigned char* data, unsigned int size, TBufferLoader loader,
                   TIppiImageMode mode) {
  return Exported([=] {
    if (data == nullptr) return VIZLE_INVALID_ARGUMENT;
    ippiImgStruct* record = NewImage(handle);
    if (record == nullptr) return VIZLE_INVALID_ARGUMENT;
    record->Image->Mode = mode;
    const auto decode = [=] { return (record->Image->*loader)(data, size) == 0 ? VIZLE_OK : VIZLE_IMAGE_IO_FAILED; };
    return Exported(decode, VIZLE_IMAGE_IO_FAILED);
  });
}

}  // namespace

int32_t VIZL_LoadImageFromFile(HImage* handle, const char* fileName) { return loadFile(handle, fileName, imRGB24); }

int32_t VIZL_LoadImageFromFileWithAlpha(HImage* handle, const char* fileName) {
  return loadFile(handle, fileName, imRGBA32);
}

int32_t VIZL_LoadImageFromJpegBuffer(HImage* handle, const unsigned char* data, unsigned int size) {
  return loadBuffer(handle, data, size, &TIppiImage::LoadFromJpegBuffer, imRGB24);
}

int32_t VIZL_LoadImageFromPngBuffer(HImage* handle, const unsigned char* data, unsigned int size) {
  return loadBuffer(handle, data, size, &TIppiImage::LoadFromPngBuffer, imRGB24);
}

int32_t VIZL_LoadImageFromPngBufferWithAlpha(HImage* handle, const unsigned char* data, unsigned int size) {
  return loadBuffer(handle, data, size, &TIppiImage::LoadFromPngBuffer, imRGBA32);
}
