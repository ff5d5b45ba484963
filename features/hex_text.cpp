#include "features/hex_text.h"

#include <cstdint>

const char hex_codes[17] = "0123456789ABCDEF";

namespace {

unsigned valueOf(char digit) {
  for (unsigned value = 0; value < 16; ++value) {
    if (hex_codes[value] == digit) return value;
  }
  return 0;
}

unsigned byteOf(const char* digits) { return valueOf(digits[0]) * 16 + valueOf(digits[1]); }

}  // namespace

char* byte2hex(unsigned char value) { return new char[3]{hex_codes[value >> 4], hex_codes[value & 15], 0}; }

char hex2byte(const char* digits) { return static_cast<char>(byteOf(digits)); }

int hex2int(const char* digits) { return static_cast<int16_t>(byteOf(digits) * 256 + byteOf(digits + 2)); }
