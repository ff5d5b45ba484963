#include "density.h"

#include <cmath>
#include <cstdint>
#include <cstring>
#include <span>

namespace {

using Bytes = std::vector<unsigned char>;

constexpr double kInchesPerMetre = 1 / 0.0254;

void putBigEndian(unsigned char* to, uint32_t value, int bytes) {
  for (int k = bytes - 1; k >= 0; --k, value >>= 8) to[k] = static_cast<unsigned char>(value);
}

// The JFIF segment comes first: its unit 1 is dots per inch.
void setJpegDensity(Bytes& file, double dotsPerInch) {
  if (file.size() < 18 || std::memcmp(file.data() + 6, "JFIF", 5) != 0) return;
  const auto density = static_cast<uint32_t>(std::lround(dotsPerInch));
  file[13] = 1;
  putBigEndian(file.data() + 14, density, 2);
  putBigEndian(file.data() + 16, density, 2);
}

// CRC-32 as PNG has it.
uint32_t checksum(std::span<const unsigned char> bytes) {
  uint32_t sum = 0xffffffffu;
  for (const unsigned char byte : bytes) {
    sum ^= byte;
    for (int k = 0; k < 8; ++k) sum = sum >> 1 ^ ((sum & 1) != 0 ? 0xedb88320u : 0u);
  }
  return ~sum;
}

// A pHYs chunk, in dots per metre, has its place right behind the header.
void insertPngDensity(Bytes& file, double dotsPerInch) {
  constexpr ptrdiff_t kHeaderEnd = 33;
  if (file.size() < kHeaderEnd) return;
  const auto density = static_cast<uint32_t>(std::lround(dotsPerInch * kInchesPerMetre));
  unsigned char chunk[21] = {0, 0, 0, 9, 'p', 'H', 'Y', 's'};
  putBigEndian(chunk + 8, density, 4);
  putBigEndian(chunk + 12, density, 4);
  chunk[16] = 1;  // metres
  putBigEndian(chunk + 17, checksum({chunk + 4, 13}), 4);
  file.insert(file.begin() + kHeaderEnd, chunk, chunk + sizeof chunk);
}

void setBmpDensity(Bytes& file, double dotsPerInch) {
  if (file.size() < 54) return;
  auto density = static_cast<uint32_t>(std::lround(dotsPerInch * kInchesPerMetre));
  for (size_t k = 0; k < 4; ++k, density >>= 8) {
    file[38 + k] = static_cast<unsigned char>(density);
    file[42 + k] = static_cast<unsigned char>(density);
  }
}

}  // namespace

Bytes withDensity(Bytes file, double dotsPerInch) {
  if (dotsPerInch <= 0 || file.empty()) return file;
  if (file[0] == 0xff) setJpegDensity(file, dotsPerInch);
  if (file[0] == 0x89) insertPngDensity(file, dotsPerInch);
  if (file[0] == 'B') setBmpDensity(file, dotsPerInch);
  return file;
}
