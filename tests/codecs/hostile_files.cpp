#include "tests/codecs/hostile_files.h"

#include <zlib.h>

#include <algorithm>
#include <cstring>

#include "tests/codecs/bmp_files.h"

namespace {

void putBigEndian(Bytes& bytes, std::size_t at, std::uint32_t value, int count) {
  for (int i = 0; i < count; ++i)
    bytes[at + static_cast<std::size_t>(i)] = static_cast<unsigned char>(value >> 8 * (count - 1 - i));
}

void putChunk(Bytes& file, const char* type, const Bytes& data) {
  const std::size_t at = file.size();
  file.resize(at + 8);
  putBigEndian(file, at, static_cast<std::uint32_t>(data.size()), 4);
  std::memcpy(file.data() + at + 4, type, 4);
  file.insert(file.end(), data.begin(), data.end());
  const auto sum = crc32(0, file.data() + at + 4, static_cast<uInt>(data.size() + 4));
  file.resize(file.size() + 4);
  putBigEndian(file, file.size() - 4, static_cast<std::uint32_t>(sum), 4);
}

// Where the last start of a scan stands.
std::size_t lastScan(const Bytes& file) {
  std::size_t found = 0;
  for (std::size_t i = 0; i + 1 < file.size(); ++i) {
    if (file[i] == 0xFF && file[i + 1] == 0xDA) found = i;
  }
  return found;
}

void pack(z_stream& stream, const unsigned char* data, std::size_t size, int flush, Bytes& packed) {
  Bytes piece(1 << 16);
  stream.next_in = const_cast<Bytef*>(data);
  stream.avail_in = static_cast<uInt>(size);
  do {
    stream.next_out = piece.data();
    stream.avail_out = static_cast<uInt>(piece.size());
    deflate(&stream, flush);
    packed.insert(packed.end(), piece.begin(), piece.end() - static_cast<std::ptrdiff_t>(stream.avail_out));
  } while (stream.avail_out == 0);
}

// As they are packed: each with the byte of its filter, an interlaced picture as seven of every eighth to second pixel.
std::size_t bytesOfRows(const Bomb& size, bool interlaced) {
  static constexpr int kFirstX[] = {0, 4, 0, 2, 0, 1, 0}, kFirstY[] = {0, 0, 4, 0, 2, 0, 1};
  static constexpr int kStepX[] = {8, 8, 4, 4, 2, 2, 1}, kStepY[] = {8, 8, 8, 4, 4, 2, 2};
  const auto rows = [&](int width, int height) {
    return width == 0 ? 0 : (1 + static_cast<std::size_t>(width * size.channels)) * static_cast<std::size_t>(height);
  };
  if (!interlaced) return rows(size.width, size.height);
  std::size_t bytes = 0;
  for (int pass = 0; pass < 7; ++pass) {
    bytes += rows((size.width - kFirstX[pass] + kStepX[pass] - 1) / kStepX[pass],
                  (size.height - kFirstY[pass] + kStepY[pass] - 1) / kStepY[pass]);
  }
  return bytes;
}

Bytes encodeFlat(const Bomb& size, JpegCoding coding) {
  jpeg_compress_struct info = {};
  jpeg_error_mgr errors;
  info.err = jpeg_std_error(&errors);
  jpeg_create_compress(&info);
  unsigned char* memory = nullptr;
  unsigned long bytes = 0;
  jpeg_mem_dest(&info, &memory, &bytes);
  info.image_width = static_cast<JDIMENSION>(size.width);
  info.image_height = static_cast<JDIMENSION>(size.height);
  info.input_components = size.channels;
  info.in_color_space = size.channels == 1 ? JCS_GRAYSCALE : JCS_RGB;
  jpeg_set_defaults(&info);
  if (size.channels == 3) info.comp_info[0].h_samp_factor = info.comp_info[0].v_samp_factor = 1;
  const bool arithmetic = coding == JpegCoding::kArithmetic || coding == JpegCoding::kArithmeticProgressive;
  info.arith_code = arithmetic;
  info.optimize_coding = !arithmetic;
  if (coding == JpegCoding::kProgressive || coding == JpegCoding::kArithmeticProgressive)
    jpeg_simple_progression(&info);
  jpeg_start_compress(&info, TRUE);
  Bytes row(static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.channels), 128);
  JSAMPROW rows[1] = {row.data()};
  for (int y = 0; y < size.height; ++y) jpeg_write_scanlines(&info, rows, 1);
  jpeg_finish_compress(&info);
  jpeg_destroy_compress(&info);
  Bytes file(memory, memory + bytes);
  std::free(memory);
  return file;
}

}  // namespace

// The sides stand five bytes behind the marker of the frame: C0, C2 when progressive, C9 and CA when arithmetic.
Bytes jpegWithSides(Bytes bytes, int width, int height) {
  for (std::size_t i = 2; i + 9 < bytes.size(); ++i) {
    const unsigned char marker = bytes[i + 1];
    if (bytes[i] != 0xFF || (marker != 0xC0 && marker != 0xC2 && marker != 0xC9 && marker != 0xCA)) continue;
    putBigEndian(bytes, i + 5, static_cast<std::uint32_t>(height), 2);
    putBigEndian(bytes, i + 7, static_cast<std::uint32_t>(width), 2);
    return bytes;
  }
  throw std::logic_error("no frame");
}

Bytes pngWithSides(Bytes bytes, std::uint32_t width, std::uint32_t height) {
  putBigEndian(bytes, 16, width, 4);
  putBigEndian(bytes, 20, height, 4);
  putBigEndian(bytes, 29, static_cast<std::uint32_t>(crc32(0, bytes.data() + 12, 17)), 4);
  return bytes;
}

// Behind the header.
Bytes pngWithChunk(const Bytes& file, const char* type, const Bytes& data) {
  Bytes made(file.begin(), file.begin() + 33);
  putChunk(made, type, data);
  made.insert(made.end(), file.begin() + 33, file.end());
  return made;
}

Bytes emptyJpeg(const Bomb& claimed, JpegCoding coding) {
  return jpegWithSides(encodeFlat({8, 8, claimed.channels}, coding), claimed.width, claimed.height);
}

Bytes manyScans(const Bomb& claimed, JpegCoding coding, int times, std::size_t padding) {
  Bytes bytes = emptyJpeg(claimed, coding);
  const Bytes scan(bytes.begin() + static_cast<std::ptrdiff_t>(lastScan(bytes)), bytes.end() - 2);
  bytes.resize(bytes.size() - 2);
  for (int i = 1; i < times; ++i) bytes.insert(bytes.end(), scan.begin(), scan.end());
  bytes.insert(bytes.end(), padding, 0);
  bytes.insert(bytes.end(), {0xFF, 0xD9});
  return bytes;
}

Bytes flatJpeg(const Bomb& size, JpegCoding coding) { return encodeFlat(size, coding); }

Bytes packedZeros(std::size_t size, const Bytes& behind) {
  Bytes zeros(1 << 20, 0), packed;
  z_stream stream = {};
  deflateInit(&stream, 9);
  for (std::size_t left = size; left > 0;) {
    const std::size_t count = std::min(left, zeros.size());
    pack(stream, zeros.data(), count, Z_NO_FLUSH, packed);
    left -= count;
  }
  pack(stream, behind.data(), behind.size(), Z_FINISH, packed);
  deflateEnd(&stream);
  return packed;
}

Bytes flatPng(const Bomb& size, bool interlaced, const Bytes& behind) {
  Bytes file = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
  Bytes header(13, 0);
  putBigEndian(header, 0, static_cast<std::uint32_t>(size.width), 4);
  putBigEndian(header, 4, static_cast<std::uint32_t>(size.height), 4);
  header[8] = 8;
  header[9] = size.channels == 1   ? PNG_COLOR_TYPE_GRAY
              : size.channels == 3 ? PNG_COLOR_TYPE_RGB
                                   : PNG_COLOR_TYPE_RGB_ALPHA;
  header[12] = interlaced ? 1 : 0;
  putChunk(file, "IHDR", header);
  putChunk(file, "IDAT", packedZeros(bytesOfRows(size, interlaced), behind));
  putChunk(file, "IEND", {});
  return file;
}

Bytes flatBmp(const Bomb& size, int depth, double share) {
  Bytes file = bmpHeader(size.width, size.height, depth);
  if (depth < 16) file.insert(file.end(), std::size_t{4} << depth, 0);
  const double rows = share * static_cast<double>(bmpRowSize(size.width, depth)) * size.height;
  file.insert(file.end(), static_cast<std::size_t>(rows), 0);
  return file;
}
