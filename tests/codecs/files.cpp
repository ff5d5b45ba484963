#include "tests/codecs/files.h"

#include <unistd.h>

#include <algorithm>
#include <csetjmp>
#include <cstdio>
#include <cstring>

#include "tests/files/png_files.h"

namespace {

// Larger pictures, which damage to a header may declare, count as errors here.
constexpr double kMostPixels = 1 << 26;

struct Errors {
  jpeg_error_mgr base;
  std::jmp_buf jump;
};

void jump(j_common_ptr codec) { std::longjmp(reinterpret_cast<Errors*>(codec->err)->jump, 1); }
void silent(j_common_ptr) {}
void silentTrace(j_common_ptr, int) {}

jpeg_error_mgr* quiet(Errors& errors) {
  jpeg_std_error(&errors.base);
  errors.base.error_exit = jump;
  errors.base.output_message = silent;
  errors.base.emit_message = silentTrace;
  return &errors.base;
}

// False on a libjpeg error. `out` lives outside the frame that is jumped to.
bool decodeInto(const Bytes& bytes, jpeg_decompress_struct& info, Errors& errors, Samples& out) {
  if (setjmp(errors.jump) != 0) return false;
  jpeg_create_decompress(&info);
  jpeg_mem_src(&info, bytes.data(), bytes.size());
  jpeg_read_header(&info, TRUE);
  if (static_cast<double>(info.image_width) * info.image_height > kMostPixels) return false;
  jpeg_start_decompress(&info);
  out.width = static_cast<int>(info.output_width);
  out.height = static_cast<int>(info.output_height);
  out.channels = info.output_components;
  out.data.resize(static_cast<std::size_t>(out.width) * static_cast<std::size_t>(out.height * out.channels));
  while (info.output_scanline < info.output_height) {
    JSAMPROW rows[1] = {out.row(static_cast<int>(info.output_scanline))};
    jpeg_read_scanlines(&info, rows, 1);
  }
  jpeg_finish_decompress(&info);
  return true;
}

struct Input {
  const Bytes* bytes;
  std::size_t position;
};

void takeBytes(png_structp png, png_bytep out, std::size_t count) {
  auto* const input = static_cast<Input*>(png_get_io_ptr(png));
  if (count > input->bytes->size() - input->position) png_error(png, "end");
  std::memcpy(out, input->bytes->data() + input->position, count);
  input->position += count;
}

void appendBytes(png_structp png, png_bytep data, std::size_t count) {
  auto* const out = static_cast<Bytes*>(png_get_io_ptr(png));
  out->insert(out->end(), data, data + count);
}

void pngJump(png_structp png, png_const_charp) { png_longjmp(png, 1); }
void pngSilent(png_structp, png_const_charp) {}

bool readPng(png_structp png, png_infop info, Input& input, Samples& out) {
  if (setjmp(png_jmpbuf(png)) != 0) return false;
  png_set_read_fn(png, &input, takeBytes);
  png_read_info(png, info);
  if (static_cast<double>(png_get_image_width(png, info)) * png_get_image_height(png, info) > kMostPixels) return false;
  const int passes = png_set_interlace_handling(png);
  png_read_update_info(png, info);
  out.width = static_cast<int>(png_get_image_width(png, info));
  out.height = static_cast<int>(png_get_image_height(png, info));
  out.channels = png_get_channels(png, info);
  const std::size_t rowBytes = png_get_rowbytes(png, info);
  out.data.resize(rowBytes * static_cast<std::size_t>(out.height));
  for (int pass = 0; pass < passes; ++pass) {
    for (int y = 0; y < out.height; ++y) {
      png_read_row(png, out.data.data() + rowBytes * static_cast<std::size_t>(y), nullptr);
    }
  }
  return true;
}

// A chunk before the pixels that is longer than the file, which can't be read in any case: libpng would
// first take and clear as much memory as the chunk declares.
bool declaresTooMuch(const Bytes& bytes) {
  std::size_t end = kPngSignatureBytes;  // of the chunks that are there whole
  bool pixels = false;
  eachPngChunk(bytes.data(), bytes.size(), [&](const unsigned char* chunk, std::uint32_t length) {
    pixels = pixels || std::memcmp(chunk + 4, "IDAT", 4) == 0;
    end += length + kPngChunkFrame;
  });
  return !pixels && end + kPngChunkFrame <= bytes.size() && std::memcmp(bytes.data() + end + 4, "IDAT", 4) != 0;
}

void addExtraChunks(png_structp png, png_infop info) {
  png_set_gAMA(png, info, 0.45);
  png_color_16 transparent = {};
  if (png_get_color_type(png, info) == PNG_COLOR_TYPE_RGB) png_set_tRNS(png, info, nullptr, 0, &transparent);
  char key[] = "Title";
  char words[] = "a text that is compressed, compressed, compressed, compressed";
  png_text text = {};
  text.compression = PNG_TEXT_COMPRESSION_zTXt;
  text.key = key;
  text.text = words;
  text.text_length = std::strlen(words);
  png_set_text(png, info, &text, 1);
}

}  // namespace

Samples makeSamples(int width, int height, int channels) {
  Samples samples{width, height, channels, {}};
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      for (int k = 0; k < channels; ++k) {
        samples.data.push_back(static_cast<unsigned char>(128 + 60 * ((x / 5 + k) % 2) + 3 * y + 5 * x - 40 * k));
      }
    }
  }
  return samples;
}

Bytes writeJpeg(const Samples& samples, JpegForm form, int quality) {
  form.width = samples.width;
  form.height = samples.height;
  form.components = samples.channels;
  return writeJpeg(form, quality,
                   [&](int y, Bytes& row) { std::copy_n(samples.pixel(0, y), row.size(), row.begin()); });
}

std::optional<Samples> decodeJpeg(const Bytes& bytes) {
  if (bytes.empty()) return std::nullopt;
  jpeg_decompress_struct info = {};
  Errors errors;
  info.err = quiet(errors);
  Samples samples;
  const bool good = decodeInto(bytes, info, errors, samples);
  jpeg_destroy_decompress(&info);
  if (!good) return std::nullopt;
  return samples;
}

Bytes writePng(int width, int height, const Bytes& rows, const PngKind& kind) {
  Bytes out;
  png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  png_infop info = png_create_info_struct(png);
  png_set_write_fn(png, &out, appendBytes, nullptr);
  png_set_IHDR(png, info, static_cast<png_uint_32>(width), static_cast<png_uint_32>(height), kind.bitDepth,
               kind.colourType, kind.interlaced ? PNG_INTERLACE_ADAM7 : PNG_INTERLACE_NONE,
               PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
  const png_color palette[2] = {{10, 20, 30}, {200, 100, 50}};
  if (kind.colourType == PNG_COLOR_TYPE_PALETTE) png_set_PLTE(png, info, palette, 2);
  if (kind.extraChunks) addExtraChunks(png, info);
  png_write_info(png, info);
  const int passes = kind.interlaced ? png_set_interlace_handling(png) : 1;
  const std::size_t rowBytes = png_get_rowbytes(png, info);
  for (int pass = 0; pass < passes; ++pass) {
    for (int y = 0; y < height; ++y) png_write_row(png, rows.data() + rowBytes * static_cast<std::size_t>(y));
  }
  png_write_end(png, nullptr);
  png_destroy_write_struct(&png, &info);
  return out;
}

Bytes writePng(const Samples& samples, const PngKind& kind) {
  return writePng(samples.width, samples.height, samples.data, kind);
}

std::optional<Samples> decodePng(const Bytes& bytes) {
  if (bytes.size() < 8 || png_sig_cmp(bytes.data(), 0, 8) != 0 || declaresTooMuch(bytes)) return std::nullopt;
  png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, pngJump, pngSilent);
  png_infop info = png_create_info_struct(png);
  Input input = {&bytes, 0};
  Samples samples;
  const bool good = readPng(png, info, input, samples);
  png_destroy_read_struct(&png, &info, nullptr);
  if (!good) return std::nullopt;
  return samples;
}

std::string printedBy(const std::function<void()>& work) {
  std::fflush(nullptr);
  std::FILE* const taken = std::tmpfile();
  const int out = dup(1), err = dup(2);
  dup2(fileno(taken), 1);
  dup2(fileno(taken), 2);
  work();
  std::fflush(nullptr);
  dup2(out, 1);
  dup2(err, 2);
  close(out);
  close(err);
  std::string text(static_cast<std::size_t>(lseek(fileno(taken), 0, SEEK_END)), '\0');
  const ssize_t got = pread(fileno(taken), text.data(), text.size(), 0);
  std::fclose(taken);
  text.resize(static_cast<std::size_t>(got < 0 ? 0 : got));
  return text;
}
