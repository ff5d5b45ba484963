#include "encode.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "failure.h"
#include "file_bytes.h"
#include "scratch_file.h"

namespace {

struct Ending {
  const char* text;
  Format format;
};

constexpr Ending kEndings[] = {{".jpg", Format::kJpeg},  {".jpeg", Format::kJpeg}, {".jpe", Format::kJpeg},
                               {".jfif", Format::kJpeg}, {".png", Format::kPng},   {".bmp", Format::kBmp}};

// The library tells a BMP file as written also when the disk was full.
bool isWhole(const std::string& path, const Picture& picture) {
  struct stat status;
  if (stat(path.c_str(), &status) != 0) return false;
  const Size size = picture.size();
  const int64_t header = 54;
  const int64_t row = (3 * int64_t{size.width} + 3) / 4 * 4;
  return formatOfName(path) != Format::kBmp || status.st_size == header + row * size.height;
}

}  // namespace

const char* endingOf(Format format) {
  return format == Format::kPng ? ".png" : format == Format::kBmp ? ".bmp" : ".jpg";
}

Format formatOfName(const std::string& name) {
  const size_t dot = name.rfind('.');
  if (dot == std::string::npos) return Format::kAuto;
  std::string ending = name.substr(dot);
  std::transform(ending.begin(), ending.end(), ending.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
  for (const Ending& known : kEndings) {
    if (ending == known.text) return known.format;
  }
  return Format::kAuto;
}

void saveTo(const std::string& path, const Picture& picture) {
  errno = 0;
  const int32_t code = VIZL_SaveImageToFile(picture.handle(), path.c_str());
  const int error = errno;
  if (code == VIZLE_OK && isWhole(path, picture)) return;
  // The library tells only that writing failed; what the system said last is mostly why.
  throw Failure(std::string("cannot write the picture") + (error != 0 ? std::string(": ") + std::strerror(error) : ""),
                code);
}

std::vector<unsigned char> encode(const Picture& picture, Format format) {
  const ScratchFile file(format, {});
  saveTo(file.path(), picture);
  std::vector<unsigned char> bytes;
  readFile(file.path(), bytes);
  return bytes;
}
