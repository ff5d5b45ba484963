#include "exif.h"

#include <libexif/exif-data.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <vector>

namespace {

using Bytes = std::span<const unsigned char>;

constexpr unsigned char kHeader[6] = {'E', 'x', 'i', 'f', 0, 0};
constexpr unsigned char kPngSignature[8] = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1a, '\n'};

bool startsWith(Bytes bytes, Bytes start) {
  return bytes.size() >= start.size() && std::equal(start.begin(), start.end(), bytes.begin());
}

// The first Exif segment before the picture's data, header included; empty if there is none.
Bytes exifOfJpeg(Bytes file) {
  size_t at = 2;
  while (at + 4 <= file.size() && file[at] == 0xff) {
    const unsigned char marker = file[at + 1];
    if (marker == 0xff) {
      ++at;
      continue;
    }
    const bool isStartOfScan = marker == 0xda;
    const size_t length = file[at + 2] * size_t{256} + file[at + 3];
    if (isStartOfScan || length < 2 || length > file.size() - at - 2) break;
    const Bytes segment = file.subspan(at + 4, length - 2);
    if (marker == 0xe1 && startsWith(segment, kHeader)) return segment;
    at += 2 + length;
  }
  return {};
}

// The eXIf chunk with the header that JPEG files have before it; empty if there is none.
std::vector<unsigned char> exifOfPng(Bytes file) {
  size_t at = sizeof kPngSignature;
  while (at + 12 <= file.size()) {
    const unsigned char* chunk = file.data() + at;
    const size_t length = chunk[0] * size_t{1 << 24} + chunk[1] * size_t{1 << 16} + chunk[2] * size_t{256} + chunk[3];
    if (length > file.size() - at - 12) break;
    if (std::memcmp(chunk + 4, "eXIf", 4) == 0) {
      std::vector<unsigned char> exif(kHeader, kHeader + sizeof kHeader);
      exif.insert(exif.end(), chunk + 8, chunk + 8 + length);
      return exif;
    }
    at += 12 + length;
  }
  return {};
}

int orientationOf(Bytes exif) {
  const std::unique_ptr<ExifData, void (*)(ExifData*)> data(exif_data_new(), exif_data_unref);
  if (data == nullptr) return 1;
  exif_data_unset_option(data.get(), EXIF_DATA_OPTION_FOLLOW_SPECIFICATION);
  exif_data_load_data(data.get(), exif.data(), static_cast<unsigned int>(exif.size()));
  const ExifEntry* entry = exif_content_get_entry(data->ifd[EXIF_IFD_0], EXIF_TAG_ORIENTATION);
  if (entry == nullptr || entry->format != EXIF_FORMAT_SHORT || entry->size < 2) return 1;
  return exif_get_short(entry->data, exif_data_get_byte_order(data.get()));
}

}  // namespace

Orientation exifOrientation(Bytes file) {
  constexpr size_t kMostBytes = 1 << 24;  // an eXIf chunk may claim gigabytes
  if (startsWith(file, kPngSignature)) {
    const std::vector<unsigned char> exif = exifOfPng(file);
    return exif.empty() || exif.size() > kMostBytes ? Orientation() : Orientation(orientationOf(exif));
  }
  if (file.size() < 2 || file[0] != 0xff || file[1] != 0xd8) return Orientation();
  const Bytes exif = exifOfJpeg(file);
  return exif.empty() ? Orientation() : Orientation(orientationOf(exif));
}
