// Changes PNG files so that most stay worth decoding: the checksums are put right again, and a quarter of the time it
// is the packed pixels that change, not the bytes into which they were packed.
#include <zlib.h>

#include <algorithm>
#include <cstring>
#include <vector>

#include "tests/fuzz/input.h"

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);

namespace {

using Bytes = std::vector<std::uint8_t>;
constexpr std::size_t kSignatureBytes = 8, kChunkFrame = 12, kMostPacked = 1 << 16;

std::uint32_t bigEndian(const std::uint8_t* p) {
  return static_cast<std::uint32_t>(p[0]) << 24 | static_cast<std::uint32_t>(p[1]) << 16 |
         static_cast<std::uint32_t>(p[2]) << 8 | p[3];
}

void putBigEndian(std::uint8_t* p, std::uint32_t value) {
  for (int i = 0; i < 4; ++i) p[i] = static_cast<std::uint8_t>(value >> 8 * (3 - i));
}

// Calls `visit` with each chunk that is there whole: its first byte and the length of its data.
template <typename Visit>
void eachChunk(std::uint8_t* data, std::size_t size, Visit visit) {
  for (std::size_t at = kSignatureBytes; at + kChunkFrame <= size;) {
    const std::uint32_t length = bigEndian(data + at);
    if (length > size - at - kChunkFrame) return;
    visit(data + at, length);
    at += length + kChunkFrame;
  }
}

void mendChecksums(std::uint8_t* data, std::size_t size) {
  eachChunk(data, size, [](std::uint8_t* chunk, std::uint32_t length) {
    putBigEndian(chunk + 8 + length, static_cast<std::uint32_t>(crc32(0, chunk + 4, length + 4)));
  });
}

Bytes unpack(const Bytes& packed) {
  Bytes rows(kMostPacked);
  z_stream stream = {};
  if (inflateInit(&stream) != Z_OK) return {};
  stream.next_in = const_cast<Bytef*>(packed.data());
  stream.avail_in = static_cast<uInt>(packed.size());
  stream.next_out = rows.data();
  stream.avail_out = static_cast<uInt>(rows.size());
  inflate(&stream, Z_FINISH);
  rows.resize(stream.total_out);
  inflateEnd(&stream);
  return rows;
}

// The file with other rows, all in one chunk where the first of them lay; nothing if that has no room.
Bytes withRows(const Bytes& file, const Bytes& rows) {
  uLongf size = compressBound(static_cast<uLong>(rows.size()));
  Bytes packed(size);
  compress2(packed.data(), &size, rows.data(), static_cast<uLong>(rows.size()), 6);
  packed.resize(size);
  Bytes out(file.begin(), file.begin() + kSignatureBytes);
  bool done = false;
  Bytes source = file;
  eachChunk(source.data(), source.size(), [&](const std::uint8_t* chunk, std::uint32_t length) {
    const bool pixels = std::memcmp(chunk + 4, "IDAT", 4) == 0;
    if (!pixels) out.insert(out.end(), chunk, chunk + length + kChunkFrame);
    if (!pixels || done) return;
    done = true;
    Bytes made(kChunkFrame + packed.size());
    putBigEndian(made.data(), static_cast<std::uint32_t>(packed.size()));
    std::memcpy(made.data() + 4, "IDAT", 4);
    std::copy(packed.begin(), packed.end(), made.begin() + 8);
    out.insert(out.end(), made.begin(), made.end());
  });
  return out;
}

std::size_t mutateRows(std::uint8_t* data, std::size_t size, std::size_t maxSize) {
  Bytes packed;
  eachChunk(data, size, [&](const std::uint8_t* chunk, std::uint32_t length) {
    if (std::memcmp(chunk + 4, "IDAT", 4) == 0) packed.insert(packed.end(), chunk + 8, chunk + 8 + length);
  });
  Bytes rows = unpack(packed);
  if (rows.empty()) return 0;
  const std::size_t had = rows.size();
  rows.resize(had + 64);
  rows.resize(LLVMFuzzerMutate(rows.data(), had, rows.size()));
  const Bytes file = withRows(Bytes(data, data + size), rows);
  if (file.size() > maxSize) return 0;
  std::copy(file.begin(), file.end(), data);
  return file.size();
}

}  // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t maxSize,
                                               unsigned seed) {
  if (size > kSignatureBytes && seed % 4 == 0) {
    const std::size_t made = mutateRows(data, size, maxSize);
    if (made != 0) size = made;
  } else {
    size = LLVMFuzzerMutate(data, size, maxSize);
  }
  if (seed % 16 != 1) mendChecksums(data, size);
  return size;
}
