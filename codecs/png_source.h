// libpng's input from a buffer in memory and from a file.
#pragma once

#include <png.h>

#include <cstdint>
#include <cstdio>

struct my_png_buffer_ {
  const unsigned char* data;
  std::uint64_t size;
  std::uint64_t position;  // next byte to be read
};

void png_memread_func(png_struct* png, unsigned char* out, std::size_t length);
// Makes the record, which stays the caller's, the decoder's input.
void png_data_read(png_struct* png, my_png_buffer_* buffer);

struct PngFile {
  std::FILE* file;
  std::uint64_t left;    // bytes that may still be read
  bool stopped = false;  // more than these were asked for
};

void pngReadFile(png_struct* png, unsigned char* out, std::size_t length);
