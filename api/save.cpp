// Pictures from handles into files.
#include "api/exported.h"
#include "api/file_format.h"
#include "api/handles.h"

namespace {

int saveByFormat(TIppiImage& image, const char* fileName, ContextID context) {
  switch (FileFormatOf(fileName)) {
    case TFileFormat::bmp:
      return image.SaveToFile(fileName);
    case TFileFormat::png:
      return image.SaveToPngFile(fileName);
    default:
      return image.SaveToJpegFile(fileName, context);
  }
}

}  // namespace

int32_t VIZL_SaveImageToFile(HImage image, const char* fileName) { return VIZL_SaveImageToFile_C(image, fileName, 0); }

int32_t VIZL_SaveImageToFile_C(HImage image, const char* fileName, ContextID context) {
  return Exported(
      [=] {
        if (fileName == nullptr) return VIZLE_INVALID_ARGUMENT;
        if (!CanOpenFile(fileName, "wbe")) return VIZLE_CANNOT_CREATE_FILE;
        ippiImgStruct* record = FindImage(image);
        if (record == nullptr) return VIZLE_INVALID_ARGUMENT;
        return saveByFormat(*record->Image, fileName, context) == 0 ? VIZLE_OK : VIZLE_IMAGE_IO_FAILED;
      },
      VIZLE_IMAGE_IO_FAILED);
}
