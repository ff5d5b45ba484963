#include "base64.h"

#include <array>
#include <cstdint>

namespace {

constexpr char kDigits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr uint8_t kNoDigit = 255;

constexpr std::array<uint8_t, 256> makeValues() {
  std::array<uint8_t, 256> values{};
  values.fill(kNoDigit);
  for (uint8_t k = 0; k < 64; ++k) values[static_cast<unsigned char>(kDigits[k])] = k;
  return values;
}

constexpr std::array<uint8_t, 256> kValues = makeValues();

bool isLineBreak(char c) { return c == '\n' || c == '\r'; }

}  // namespace

std::string toBase64(std::span<const unsigned char> bytes) {
  std::string text;
  text.reserve((bytes.size() + 2) / 3 * 4);
  for (size_t at = 0; at < bytes.size(); at += 3) {
    const size_t count = std::min<size_t>(3, bytes.size() - at);
    uint32_t group = uint32_t{bytes[at]} << 16;
    if (count > 1) group |= uint32_t{bytes[at + 1]} << 8;
    if (count > 2) group |= bytes[at + 2];
    text += kDigits[group >> 18];
    text += kDigits[group >> 12 & 63];
    text += count > 1 ? kDigits[group >> 6 & 63] : '=';
    text += count > 2 ? kDigits[group & 63] : '=';
  }
  return text;
}

std::optional<std::vector<unsigned char>> fromBase64(std::string_view text) {
  std::vector<unsigned char> bytes;
  bytes.reserve(text.size() / 4 * 3);
  uint32_t bits = 0;
  size_t digits = 0;
  size_t pads = 0;
  for (const char c : text) {
    if (isLineBreak(c)) continue;
    if (c == '=') {
      ++pads;
      continue;
    }
    const uint8_t value = kValues[static_cast<unsigned char>(c)];
    if (value == kNoDigit || pads > 0) return std::nullopt;
    bits = bits << 6 | value;
    if (++digits % 4 != 1) bytes.push_back(static_cast<unsigned char>(bits >> (6 - 2 * ((digits - 1) % 4))));
  }
  if (digits % 4 == 1 || pads > 2 || (pads > 0 && (digits + pads) % 4 != 0)) return std::nullopt;
  return bytes;
}
