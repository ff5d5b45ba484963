#include "decode.h"

#include <utility>

#include "exif.h"
#include "failure.h"
#include "flatten.h"
#include "scratch_file.h"

namespace {

using Bytes = std::span<const unsigned char>;

// After some failures of the library there is an image to free, after others none; the number tells.
Picture adopt(int32_t code, HImage handle, const char* doing) {
  constexpr HImage kNone = UINT32_MAX;
  if (code == VIZLE_OK) return Picture(handle);
  if (handle != kNone) VIZL_FreeImage(handle);
  requireOk(code, doing);
  return Picture();
}

Picture decodeJpeg(Bytes file) {
  HImage handle = UINT32_MAX;
  const int32_t code = VIZL_LoadImageFromJpegBuffer(&handle, file.data(), static_cast<unsigned int>(file.size()));
  return adopt(code, handle, "cannot decode the JPEG file");
}

// The colour type stands in the first chunk; alpha that a file has by other means the library does not read.
bool hasAlpha(Bytes png) {
  constexpr size_t kColourType = 25;
  constexpr unsigned char kColourWithAlpha = 6;
  return png.size() > kColourType && png[kColourType] == kColourWithAlpha;
}

Picture decodePng(Bytes file, Colour ground) {
  const bool alpha = hasAlpha(file);
  const auto load = alpha ? VIZL_LoadImageFromPngBufferWithAlpha : VIZL_LoadImageFromPngBuffer;
  HImage handle = UINT32_MAX;
  const int32_t code = load(&handle, file.data(), static_cast<unsigned int>(file.size()));
  Picture picture = adopt(code, handle, "cannot decode the PNG file");
  return alpha ? flatten(picture, ground) : std::move(picture);
}

// The library reads BMP from files only, and only from those named so.
Picture decodeBmp(Bytes file) {
  const ScratchFile copy(Format::kBmp, file);
  HImage handle = UINT32_MAX;
  const int32_t code = VIZL_LoadImageFromFile(&handle, copy.path().c_str());
  return adopt(code, handle, "cannot decode the BMP file");
}

Picture decode(Bytes file, Colour ground) {
  if (file.empty()) throw Failure("the file is empty");
  if (file.size() >= 3 && file[0] == 0xff && file[1] == 0xd8 && file[2] == 0xff) return decodeJpeg(file);
  if (file.size() >= 4 && file[0] == 0x89 && file[1] == 'P' && file[2] == 'N' && file[3] == 'G')
    return decodePng(file, ground);
  if (file.size() >= 2 && file[0] == 'B' && file[1] == 'M') return decodeBmp(file);
  throw Failure("neither a JPEG, a PNG nor a BMP file");
}

}  // namespace

UprightPicture decodeUpright(Bytes file, bool ignoreOrientation, Colour ground) {
  Picture stored = decode(file, ground);
  const Orientation orientation = ignoreOrientation ? Orientation() : exifOrientation(file);
  return {orientation.upright(std::move(stored)), orientation};
}
