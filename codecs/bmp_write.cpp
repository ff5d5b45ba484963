#include <climits>
#include <cstring>
#include <vector>

#include "codecs/BMP.h"
#include "codecs/bmp_header.h"
#include "codecs/file.h"

namespace {

// Masks of 16-bit pixels, each followed by a zero word: 5, 6 and 5 bits.
constexpr unsigned char kMaskBytes[12] = {0x00, 0xF8, 0, 0, 0xE0, 0x07, 0, 0, 0x1F, 0x00, 0, 0};

unsigned nearestColor(const RGBApixel& pixel, const RGBApixel* colors, unsigned count) {
  unsigned best = 0;
  int bestDistance = INT_MAX;
  for (unsigned i = 0; i < count; ++i) {
    const int blue = pixel.Blue - colors[i].Blue;
    const int green = pixel.Green - colors[i].Green;
    const int red = pixel.Red - colors[i].Red;
    const int distance = blue * blue + green * green + red * red;
    if (distance < bestDistance) {
      best = i;
      bestDistance = distance;
    }
  }
  return best;
}

void packIndexed(const BMP& bmp, int y, unsigned char* row) {
  const int perByte = 8 / bmp.BitDepth;
  for (int x = 0; x < bmp.Width; ++x) {
    const int shift = 8 - bmp.BitDepth * (x % perByte + 1);
    unsigned char& byte = row[x / perByte];
    if (x % perByte == 0) byte = 0;
    const unsigned index = nearestColor(bmp.Pixels[x][y], bmp.Colors, 1U << bmp.BitDepth);
    byte = static_cast<unsigned char>(byte | index << shift);
  }
}

void packWord(const RGBApixel& pixel, unsigned char* bytes) {
  const unsigned red = pixel.Red;
  const unsigned green = pixel.Green;
  const unsigned blue = pixel.Blue;
  const unsigned word = red >> 3 << 11 | green >> 2 << 5 | blue >> 3;
  bytes[0] = static_cast<unsigned char>(word);
  bytes[1] = static_cast<unsigned char>(word >> 8);
}

void packRow(const BMP& bmp, int y, unsigned char* row) {
  if (bmp.BitDepth < 16) return packIndexed(bmp, y, row);
  const int pixelBytes = bmp.BitDepth / 8;
  for (int x = 0; x < bmp.Width; ++x) {
    const RGBApixel& pixel = bmp.Pixels[x][y];
    unsigned char* const to = row + static_cast<std::ptrdiff_t>(x) * pixelBytes;
    if (bmp.BitDepth == 16) {
      packWord(pixel, to);
    } else {
      std::memcpy(to, &pixel, static_cast<std::size_t>(pixelBytes));
    }
  }
}

long long headerBytes(int depth) {
  if (depth < 16) return kBmpHeaderBytes + (4LL << depth);
  return depth == 16 ? kBmpHeaderBytes + static_cast<long long>(sizeof kMaskBytes) : kBmpHeaderBytes;
}

void writeHeader(std::FILE* file, const BMP& bmp) {
  const long long total = bmpRowBytes(bmp.BitDepth, bmp.Width) * bmp.Height;
  const long long header = headerBytes(bmp.BitDepth);
  BMFH fileHeader;
  fileHeader.bfSize = static_cast<std::uint32_t>(total + header);
  fileHeader.bfOffBits = static_cast<std::uint32_t>(header);
  BMIH info;
  info.biWidth = bmp.Width;
  info.biHeight = bmp.Height;
  info.biBitCount = static_cast<std::uint16_t>(bmp.BitDepth);
  info.biCompression = bmp.BitDepth == 16 ? 3 : 0;
  info.biSizeImage = static_cast<std::uint32_t>(total);
  if (bmp.XPelsPerMeter != 0) info.biXPelsPerMeter = static_cast<std::uint32_t>(bmp.XPelsPerMeter);
  if (bmp.YPelsPerMeter != 0) info.biYPelsPerMeter = static_cast<std::uint32_t>(bmp.YPelsPerMeter);
  unsigned char bytes[kBmpHeaderBytes];
  packBmpHeader(fileHeader, info, bytes);
  std::fwrite(bytes, 1, sizeof bytes, file);
  if (bmp.BitDepth < 16) std::fwrite(bmp.Colors, sizeof(RGBApixel), 1U << bmp.BitDepth, file);
  if (bmp.BitDepth == 16) std::fwrite(kMaskBytes, 1, sizeof kMaskBytes, file);
}

}  // namespace

bool BMP::WriteToFile(const char* name) {
  const File file = openFile(name, "wb");
  if (file == nullptr) return false;
  writeHeader(file.get(), *this);
  std::vector<unsigned char> row(static_cast<std::size_t>(bmpRowBytes(BitDepth, Width)));
  for (int y = Height - 1; y >= 0; --y) {
    packRow(*this, y, row.data());
    if (std::fwrite(row.data(), 1, row.size(), file.get()) != row.size()) break;
  }
  return true;
}
