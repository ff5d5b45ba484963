#include "api/file_format.h"

#include <cctype>
#include <cstdio>
#include <string_view>

namespace {

bool endsWith(std::string_view name, std::string_view lowerCaseEnd) {
  if (name.size() < lowerCaseEnd.size()) return false;
  name.remove_prefix(name.size() - lowerCaseEnd.size());
  for (std::size_t i = 0; i < name.size(); ++i) {
    // tolower takes the values of an unsigned char; a plain char above 127 may be negative.
    if (std::tolower(static_cast<unsigned char>(name[i])) != lowerCaseEnd[i]) return false;
  }
  return true;
}

}  // namespace

TFileFormat FileFormatOf(const char* fileName) {
  if (endsWith(fileName, "bmp")) return TFileFormat::bmp;
  for (const char* end : {"jpg", "jpe", "jfif", "jpeg"}) {
    if (endsWith(fileName, end)) return TFileFormat::jpeg;
  }
  return endsWith(fileName, "png") ? TFileFormat::png : TFileFormat::unknown;
}

bool CanOpenFile(const char* fileName, const char* openMode) {
  std::FILE* file = std::fopen(fileName, openMode);
  if (file == nullptr) return false;
  std::fclose(file);
  return true;
}
