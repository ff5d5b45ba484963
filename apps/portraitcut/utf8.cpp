#include "utf8.h"

#include <cstdint>

namespace {

// The length of the well-formed sequence at the start of `rest`, 0 if there is none. The bounds of the second byte
// leave out overlong forms, surrogates and what lies beyond U+10FFFF (Unicode, table 3-7).
size_t sequenceLength(const unsigned char* rest, size_t size) {
  const unsigned char lead = rest[0];
  if (lead < 0x80) return 1;
  const size_t length = lead >= 0xc2 && lead <= 0xdf   ? 2
                        : lead >= 0xe0 && lead <= 0xef ? 3
                        : lead >= 0xf0 && lead <= 0xf4 ? 4
                                                       : 0;
  if (length == 0 || length > size) return 0;
  const unsigned char lowest = lead == 0xe0 ? 0xa0 : lead == 0xf0 ? 0x90 : 0x80;
  const unsigned char highest = lead == 0xed ? 0x9f : lead == 0xf4 ? 0x8f : 0xbf;
  if (rest[1] < lowest || rest[1] > highest) return 0;
  for (size_t k = 2; k < length; ++k) {
    if (rest[k] < 0x80 || rest[k] > 0xbf) return 0;
  }
  return length;
}

}  // namespace

std::string validUtf8(const std::string& text) {
  std::string valid;
  const auto* bytes = reinterpret_cast<const unsigned char*>(text.data());
  for (size_t at = 0; at < text.size();) {
    const size_t length = sequenceLength(bytes + at, text.size() - at);
    if (length == 0) {
      valid += "\xef\xbf\xbd";
      ++at;
    } else {
      valid.append(text, at, length);
      at += length;
    }
  }
  return valid;
}
