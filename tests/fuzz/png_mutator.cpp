// Changes PNG files so that most stay worth decoding: the checksums are put right again, and a quarter of the time it
// is the packed pixels that change, not the bytes into which they were packed.
#include <zlib.h>

#include <algorithm>
#include <cstring>

#include "tests/files/png_files.h"

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);

namespace {

constexpr std::size_t kMostPacked = 1 << 16;

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
  const Bytes made = chunkBytes({"IDAT", packed(rows, 6)});
  Bytes out(file.begin(), file.begin() + kPngSignatureBytes);
  bool done = false;
  eachPngChunk(file.data(), file.size(), [&](const std::uint8_t* chunk, std::uint32_t length) {
    const bool pixels = std::memcmp(chunk + 4, "IDAT", 4) == 0;
    if (!pixels) out.insert(out.end(), chunk, chunk + length + kPngChunkFrame);
    if (pixels && !done) append(out, made);
    done = done || pixels;
  });
  return out;
}

std::size_t mutateRows(std::uint8_t* data, std::size_t size, std::size_t maxSize) {
  Bytes pixels;
  eachPngChunk(data, size, [&](const std::uint8_t* chunk, std::uint32_t length) {
    if (std::memcmp(chunk + 4, "IDAT", 4) == 0) pixels.insert(pixels.end(), chunk + 8, chunk + 8 + length);
  });
  Bytes rows = unpack(pixels);
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
  if (size > kPngSignatureBytes && seed % 4 == 0) {
    const std::size_t made = mutateRows(data, size, maxSize);
    if (made != 0) size = made;
  } else {
    size = LLVMFuzzerMutate(data, size, maxSize);
  }
  if (seed % 16 != 1) eachPngChunk(data, size, mendChecksum);
  return size;
}
