#include <algorithm>
#include <cstring>
#include <vector>

#include "codecs/BMP.h"
#include "codecs/bmp_header.h"
#include "codecs/file.h"
#include "primitives/ippi.h"

namespace {

constexpr RGBApixel kWhite = {255, 255, 255, 0};

// Rows gathered before they go into the columns together: 16 pixels of a column fill a cache line.
constexpr int kRowsAtOnce = 16;

// Above this many pixels a file must hold at least a sixteenth of its rows, so that a header alone does not
// cost gigabytes.
constexpr long long kTrustedPixels = 1LL << 26;
constexpr long long kHugeFileShare = 16;

// One channel of a 16-bit pixel: its bits, and how far they must move to lie in 0 to 31.
struct Channel {
  explicit Channel(unsigned bits) : mask(bits) {
    while (mask >> shift > 31) ++shift;
  }

  unsigned char of(unsigned word) const { return static_cast<unsigned char>(((word & mask) >> shift) * 8); }

  unsigned mask;
  int shift = 0;
};

struct Masks {
  Channel red{0x7C00};
  Channel green{0x03E0};
  Channel blue{0x001F};
};

bool supported(const BMIH& info) {
  if (info.biCompression != 0 && info.biCompression != 3) return false;
  const int depth = info.biBitCount;
  if (info.biCompression == 3 && depth != 16) return false;
  return depth == 1 || depth == 4 || depth == 8 || depth == 16 || depth == 24 || depth == 32;
}

bool canBeFilled(const BMIH& info, long long bytes) {
  if (bytes == kUnknownBytes || 1LL * info.biWidth * info.biHeight <= kTrustedPixels) return true;
  // Divided, as the product of three declared numbers may overflow.
  return bytes / bmpRowBytes(info.biBitCount, info.biWidth) >= info.biHeight / kHugeFileShare;
}

// Leaves white what the file lacks.
void readPalette(std::FILE* file, const BMFH& header, int depth, RGBApixel* colors) {
  const long long inFile = std::max((static_cast<long long>(header.bfOffBits) - kBmpHeaderBytes) / 4, 0LL);
  const long long count = std::min(inFile, 1LL << depth);
  for (long long i = 0; i < count; ++i) {
    RGBApixel entry;
    if (std::fread(&entry, sizeof entry, 1, file) != 1) return;
    colors[i] = entry;
  }
}

// Bytes between what has been read of the header and the pixels.
long long bytesToSkip(const BMFH& header, const BMIH& info) {
  long long bytes = static_cast<long long>(header.bfOffBits) - kBmpHeaderBytes;
  if (info.biBitCount < 16) bytes -= 4LL << info.biBitCount;
  if (info.biBitCount == 16 && info.biCompression == 3) bytes -= 12;
  return std::max(bytes, 0LL);
}

void skip(std::FILE* file, long long bytes) {
  unsigned char dropped[4096];
  while (bytes > 0) {
    const auto wanted = static_cast<std::size_t>(std::min<long long>(bytes, sizeof dropped));
    if (std::fread(dropped, 1, wanted, file) != wanted) return;
    bytes -= static_cast<long long>(wanted);
  }
}

unsigned wordAt(const unsigned char* bytes) { return bytes[0] | static_cast<unsigned>(bytes[1]) << 8; }

// False when the file ends here.
bool readMasks(std::FILE* file, Masks& masks) {
  unsigned char bytes[12];
  if (std::fread(bytes, 1, sizeof bytes, file) != sizeof bytes) return false;
  masks = {Channel(wordAt(bytes)), Channel(wordAt(bytes + 4)), Channel(wordAt(bytes + 8))};
  return true;
}

// The first pixel lies in the high bits of its byte.
template <int depth>
void decodeIndexed(const unsigned char* row, const RGBApixel* colors, int width, RGBApixel* out) {
  constexpr int kPerByte = 8 / depth;
  for (int x = 0; x < width; ++x) {
    const int shift = 8 - depth * (x % kPerByte + 1);
    out[x] = colors[static_cast<unsigned>(row[x / kPerByte]) >> shift & ((1U << depth) - 1)];
  }
}

void decode16(const unsigned char* row, const Masks& masks, int width, RGBApixel* out) {
  for (int x = 0; x < width; ++x) {
    const unsigned word = wordAt(row + 2 * x);
    out[x] = {masks.blue.of(word), masks.green.of(word), masks.red.of(word), 0};
  }
}

// The rows of a picture on their way into its columns, from the bottom row up.
class RowGatherer {
 public:
  explicit RowGatherer(BMP& bmp)
      : bmp_(bmp), rows_(static_cast<std::size_t>(bmp.Width) * kRowsAtOnce), y_(bmp.Height - 1) {}

  bool Done() const { return y_ < 0; }
  // White until it is written.
  RGBApixel* NextRow() {
    RGBApixel* const row = &rows_[static_cast<std::size_t>(y_ % kRowsAtOnce) * static_cast<std::size_t>(bmp_.Width)];
    std::fill_n(row, bmp_.Width, kWhite);
    return row;
  }
  void Commit() {
    if (y_ % kRowsAtOnce == 0) Flush();
    --y_;
  }
  void FillRestWhite() {
    while (!Done()) {
      NextRow();
      Commit();
    }
  }

 private:
  void Flush() {
    const int count = std::min(kRowsAtOnce, bmp_.Height - y_);
    ippiTranspose_8u_C4R(&rows_[0].Blue, bmp_.Width * 4, &bmp_.Pixels[0][y_].Blue, bmp_.Height * 4,
                         {bmp_.Width, count});
  }

  BMP& bmp_;
  std::vector<RGBApixel> rows_;  // row y lies at y mod kRowsAtOnce
  int y_;
};

void decodeRow(const unsigned char* row, const BMP& bmp, const Masks& masks, int width, RGBApixel* out) {
  if (bmp.BitDepth == 1) decodeIndexed<1>(row, bmp.Colors, width, out);
  if (bmp.BitDepth == 4) decodeIndexed<4>(row, bmp.Colors, width, out);
  if (bmp.BitDepth == 8) decodeIndexed<8>(row, bmp.Colors, width, out);
  if (bmp.BitDepth == 16) decode16(row, masks, width, out);
  if (bmp.BitDepth == 24) ippiCopy_8u_C3AC4R(row, width * 3, &out->Blue, width * 4, {width, 1});
  if (bmp.BitDepth == 32) std::memcpy(out, row, static_cast<std::size_t>(width) * 4);
}

void readRows(std::FILE* file, BMP& bmp, const Masks& masks) {
  RowGatherer rows(bmp);
  std::vector<unsigned char> bytes(static_cast<std::size_t>(bmpRowBytes(bmp.BitDepth, bmp.Width)));
  while (!rows.Done()) {
    const std::size_t got = std::fread(bytes.data(), 1, bytes.size(), file);
    const bool whole = got == bytes.size();
    // A row cut short is dropped, but for the whole pixels of a 16-bit one.
    if (!whole && bmp.BitDepth != 16) break;
    const int width = static_cast<int>(
        std::min<std::size_t>(got * 8 / static_cast<std::size_t>(bmp.BitDepth), static_cast<std::size_t>(bmp.Width)));
    decodeRow(bytes.data(), bmp, masks, width, rows.NextRow());
    rows.Commit();
    if (!whole) break;
  }
  rows.FillRestWhite();
}

}  // namespace

bool BMP::ReadFromFile(const char* name) {
  const File file = openFile(name, "rbe");
  if (file == nullptr) return Fail();
  unsigned char bytes[kBmpHeaderBytes];
  const std::size_t got = std::fread(bytes, 1, sizeof bytes, file.get());
  if (got < 2 || bytes[0] != 'B' || bytes[1] != 'M') return false;
  if (got < sizeof bytes) return Fail();
  BMFH header;
  BMIH info;
  unpackBmpHeader(bytes, header, info);
  XPelsPerMeter = static_cast<int>(info.biXPelsPerMeter);
  YPelsPerMeter = static_cast<int>(info.biYPelsPerMeter);
  if (!supported(info) || info.biWidth < 1 || info.biHeight < 1) return Fail();
  if (!canBeFilled(info, fileBytes(file.get()))) return Fail();
  SetBitDepth(info.biBitCount);
  if (!AllocPixels(info.biWidth, info.biHeight)) return Fail();

  if (Colors != nullptr) readPalette(file.get(), header, BitDepth, Colors);
  Masks masks;
  const bool hasPixels = info.biCompression == 0 || readMasks(file.get(), masks);
  if (hasPixels) skip(file.get(), bytesToSkip(header, info));
  readRows(file.get(), *this, masks);
  return true;
}
