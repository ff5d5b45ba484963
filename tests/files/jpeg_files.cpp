#include "tests/files/jpeg_files.h"

namespace {

J_COLOR_SPACE inputSpace(int components) {
  if (components == 1) return JCS_GRAYSCALE;
  return components == 3 ? JCS_RGB : components == 4 ? JCS_CMYK : JCS_UNKNOWN;
}

void setUp(jpeg_compress_struct& info, const JpegForm& form, int quality) {
  info.image_width = static_cast<JDIMENSION>(form.width);
  info.image_height = static_cast<JDIMENSION>(form.height);
  info.input_components = form.components;
  info.in_color_space = inputSpace(form.components);
  jpeg_set_defaults(&info);
  if (form.space) jpeg_set_colorspace(&info, *form.space);
  jpeg_set_quality(&info, quality, TRUE);
  if (form.horizontal != 0) info.comp_info[0].h_samp_factor = form.horizontal;
  if (form.vertical != 0) info.comp_info[0].v_samp_factor = form.vertical;
  info.restart_interval = form.restart;
  info.arith_code = form.arithmetic;
  info.optimize_coding = form.optimised;
  if (form.progressive) jpeg_simple_progression(&info);
}

bool endsScan(const Bytes& file, std::size_t at) {
  return file[at] == 0xFF && file[at + 1] != 0 && (file[at + 1] < 0xD0 || file[at + 1] > 0xD7);
}

}  // namespace

Bytes writeJpeg(const JpegForm& form, int quality, const std::function<void(int y, Bytes& row)>& fill,
                const std::function<void(jpeg_compress_struct&)>& segments) {
  jpeg_compress_struct info = {};
  jpeg_error_mgr errors;
  info.err = jpeg_std_error(&errors);
  jpeg_create_compress(&info);
  unsigned char* memory = nullptr;
  unsigned long size = 0;
  jpeg_mem_dest(&info, &memory, &size);
  setUp(info, form, quality);
  jpeg_start_compress(&info, TRUE);
  if (segments) segments(info);
  Bytes row(static_cast<std::size_t>(form.width) * static_cast<std::size_t>(form.components));
  for (int y = 0; y < form.height; ++y) {
    fill(y, row);
    JSAMPROW rows[1] = {row.data()};
    jpeg_write_scanlines(&info, rows, 1);
  }
  jpeg_finish_compress(&info);
  jpeg_destroy_compress(&info);
  const Bytes bytes(memory, memory + size);
  std::free(memory);
  return bytes;
}

Segments splitJpeg(const Bytes& file) {
  Segments segments;
  const auto take = [&](std::size_t from, std::size_t to) {
    segments.emplace_back(file.begin() + static_cast<std::ptrdiff_t>(from),
                          file.begin() + static_cast<std::ptrdiff_t>(to));
  };
  std::size_t at = 2;
  take(0, at);
  while (at + 4 <= file.size()) {
    std::size_t end = at + 2 + static_cast<std::size_t>(file[at + 2] << 8 | file[at + 3]);
    if (file[at + 1] == kScan) {
      while (end + 2 < file.size() && !endsScan(file, end)) ++end;
    }
    take(at, end);
    at = end;
  }
  take(at, file.size());
  return segments;
}

Bytes joinJpeg(const Segments& segments) {
  Bytes file;
  for (const Bytes& segment : segments) append(file, segment);
  return file;
}
