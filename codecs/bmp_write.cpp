#include <climits>
#include <utility>
#include <vector>

#include "codecs/BMP.h"
#include "codecs/bmp_header.h"
#include "codecs/file.h"
#include "primitives/ippi.h"

namespace {

// Rows taken out of the columns together: 16 pixels of a column fill a cache line.
constexpr int kRowsAtOnce = 16;

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

void packIndexed(const BMP& bmp, const RGBApixel* pixels, unsigned char* row) {
  const int perByte = 8 / bmp.BitDepth;
  for (int x = 0; x < bmp.Width; ++x) {
    const int shift = 8 - bmp.BitDepth * (x % perByte + 1);
    unsigned char& byte = row[x / perByte];
    if (x % perByte == 0) byte = 0;
    const unsigned index = nearestColor(pixels[x], bmp.Colors, 1U << bmp.BitDepth);
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

void packRow(const BMP& bmp, const RGBApixel* pixels, unsigned char* row) {
  const IppiSize roi = {bmp.Width, 1};
  if (bmp.BitDepth < 16) packIndexed(bmp, pixels, row);
  if (bmp.BitDepth == 16) {
    for (int x = 0; x < bmp.Width; ++x) packWord(pixels[x], row + 2 * x);
  }
  if (bmp.BitDepth == 24) ippiCopy_8u_AC4C3R(&pixels->Blue, bmp.Width * 4, row, bmp.Width * 3, roi);
  if (bmp.BitDepth == 32) ippiCopy_8u_C4R(&pixels->Blue, bmp.Width * 4, row, bmp.Width * 4, roi);
}

long long headerBytes(int depth) {
  if (depth < 16) return kBmpHeaderBytes + (4LL << depth);
  return depth == 16 ? kBmpHeaderBytes + static_cast<long long>(sizeof kMaskBytes) : kBmpHeaderBytes;
}

bool writeBytes(std::FILE* file, const void* bytes, std::size_t count) {
  return std::fwrite(bytes, 1, count, file) == count;
}

// False when the disk takes no more.
bool writeHeader(std::FILE* file, const BMP& bmp) {
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
  if (!writeBytes(file, bytes, sizeof bytes)) return false;
  if (bmp.BitDepth < 16) return writeBytes(file, bmp.Colors, sizeof(RGBApixel) << bmp.BitDepth);
  return bmp.BitDepth > 16 || writeBytes(file, kMaskBytes, sizeof kMaskBytes);
}

// Rows `y` and on, `count` of them, out of the columns.
void gatherRows(const BMP& bmp, int y, int count, std::vector<RGBApixel>& rows) {
  ippiTranspose_8u_C4R(&bmp.Pixels[0][y].Blue, bmp.Height * 4, &rows[0].Blue, bmp.Width * 4, {count, bmp.Width});
}

// What the writing of rows takes memory for.
struct RowBuffers {
  explicit RowBuffers(const BMP& bmp)
      : rows(static_cast<std::size_t>(bmp.Width) * kRowsAtOnce),
        bytes(static_cast<std::size_t>(bmpRowBytes(bmp.BitDepth, bmp.Width))) {}

  std::vector<RGBApixel> rows;
  std::vector<unsigned char> bytes;  // of one row in the file
};

// False when the disk takes no more.
bool writeRows(std::FILE* file, const BMP& bmp, RowBuffers& buffers) {
  const auto width = static_cast<std::size_t>(bmp.Width);
  auto& [rows, bytes] = buffers;
  for (int y = bmp.Height - 1; y >= 0; --y) {
    const int first = y / kRowsAtOnce * kRowsAtOnce;
    const bool newRows = y == bmp.Height - 1 || y - first == kRowsAtOnce - 1;
    if (newRows) gatherRows(bmp, first, y - first + 1, rows);
    packRow(bmp, &rows[static_cast<std::size_t>(y - first) * width], bytes.data());
    if (!writeBytes(file, bytes.data(), bytes.size())) return false;
  }
  return true;
}

}  // namespace

bool BMP::WriteToFile(const char* name) {
  File file = openFile(name, "wbe");
  if (file == nullptr) return false;
  RowBuffers buffers(*this);
  const bool whole = writeHeader(file.get(), *this) && writeRows(file.get(), *this, buffers);
  closeWritten(std::move(file), whole);
  return true;
}
