#include "codecs/bmp_header.h"

#include <type_traits>

namespace {

// One walk over the fields, in file order, serves reading and writing.
template <class File, class Info, class Field>
void eachField(File& file, Info& info, Field field) {
  field(file.bfType);
  field(file.bfSize);
  field(file.bfReserved1);
  field(file.bfReserved2);
  field(file.bfOffBits);
  field(info.biSize);
  field(info.biWidth);
  field(info.biHeight);
  field(info.biPlanes);
  field(info.biBitCount);
  field(info.biCompression);
  field(info.biSizeImage);
  field(info.biXPelsPerMeter);
  field(info.biYPelsPerMeter);
  field(info.biClrUsed);
  field(info.biClrImportant);
}

}  // namespace

void packBmpHeader(const BMFH& file, const BMIH& info, unsigned char bytes[kBmpHeaderBytes]) {
  eachField(file, info, [&](auto value) {
    for (unsigned i = 0; i < sizeof(value); ++i) {
      *bytes++ = static_cast<unsigned char>(static_cast<std::uint32_t>(value) >> (8 * i));
    }
  });
}

void unpackBmpHeader(const unsigned char bytes[kBmpHeaderBytes], BMFH& file, BMIH& info) {
  eachField(file, info, [&](auto& value) {
    std::uint32_t word = 0;
    for (unsigned i = 0; i < sizeof(value); ++i) word |= static_cast<std::uint32_t>(*bytes++) << (8 * i);
    value = static_cast<std::remove_reference_t<decltype(value)>>(word);
  });
}
