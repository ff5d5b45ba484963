#include "codecs/png_source.h"

#include <cstring>

void png_memread_func(png_struct* png, unsigned char* out, std::size_t length) {
  auto* const buffer = static_cast<my_png_buffer_*>(png_get_io_ptr(png));
  if (length > buffer->size - buffer->position) png_error(png, "png_mem_read_func failed");
  std::memcpy(out, buffer->data + buffer->position, length);
  buffer->position += length;
}

void png_data_read(png_struct* png, my_png_buffer_* buffer) { png_set_read_fn(png, buffer, png_memread_func); }

void pngReadFile(png_struct* png, unsigned char* out, std::size_t length) {
  auto* const source = static_cast<PngFile*>(png_get_io_ptr(png));
  source->stopped = length > source->left;
  if (source->stopped || std::fread(out, 1, length, source->file) != length) png_error(png, "file ends");
  source->left -= length;
}
