#include "tests/fuzz/trace_jpeg.h"

#include <csetjmp>

#include "codecs/jpeg_library.h"
#include "tests/fuzz/feedback.h"

namespace {

enum Event : std::uint32_t { kMessage, kForm, kComponent, kScans };

struct Tracer {
  jpeg_error_mgr base;
  std::jmp_buf jump;
};

void note(j_common_ptr codec) {
  noteEvent(kMessage, static_cast<std::uint32_t>(codec->err->msg_code) << 8 |
                          static_cast<std::uint32_t>(codec->err->msg_parm.i[0] & 0xFF));
}

void noteMessage(j_common_ptr codec, int) { note(codec); }

void stop(j_common_ptr codec) {
  note(codec);
  std::longjmp(reinterpret_cast<Tracer*>(codec->err)->jump, 1);
}

void dropMessage(j_common_ptr) {}

// As long as no real file is.
void stopManyScans(j_common_ptr codec) {
  constexpr int kMostScans = 64;
  if (reinterpret_cast<j_decompress_ptr>(codec)->input_scan_number > kMostScans) stop(codec);
}

void noteForm(const jpeg_decompress_struct& info) {
  const unsigned restart = info.restart_interval == 0 ? 0 : info.restart_interval < 8 ? 1 : 2;
  noteEvent(kForm, static_cast<std::uint32_t>(info.jpeg_color_space) << 8 |
                       static_cast<std::uint32_t>(info.num_components) << 4 | (info.progressive_mode ? 8U : 0U) |
                       (info.arith_code ? 4U : 0U) | restart);
  for (int i = 0; i < info.num_components; ++i) {
    const jpeg_component_info& component = info.comp_info[i];
    noteEvent(kComponent, static_cast<std::uint32_t>(i) << 12 |
                              static_cast<std::uint32_t>(component.h_samp_factor) << 8 |
                              static_cast<std::uint32_t>(component.v_samp_factor) << 4 |
                              static_cast<std::uint32_t>(component.quant_tbl_no & 15));
  }
}

// Where an error jumps to, so nothing here has a destructor.
long long decode(jpeg_decompress_struct& info, Tracer& tracer, const std::uint8_t* data, std::size_t size,
                 long long mostPixels) {
  volatile long long pixels = 0;
  if (setjmp(tracer.jump) != 0) return pixels;
  jpeg_create_decompress(&info);
  jpeg_mem_src(&info, data, size);
  jpeg_read_header(&info, TRUE);
  pixels = 1LL * info.image_width * info.image_height;
  noteForm(info);
  if (pixels > mostPixels) return pixels;
  jpeg_progress_mgr progress = {};
  progress.progress_monitor = stopManyScans;
  info.progress = &progress;
  jpeg_start_decompress(&info);
  const JDIMENSION rowBytes = info.output_width * static_cast<JDIMENSION>(info.output_components);
  JSAMPARRAY const rows = info.mem->alloc_sarray(reinterpret_cast<j_common_ptr>(&info), JPOOL_IMAGE, rowBytes, 1);
  while (info.output_scanline < info.output_height) jpeg_read_scanlines(&info, rows, 1);
  noteEvent(kScans, static_cast<std::uint32_t>(info.input_scan_number));
  jpeg_finish_decompress(&info);
  return pixels;
}

}  // namespace

long long traceJpeg(const std::uint8_t* data, std::size_t size, long long mostPixels) {
  if (size == 0) return 0;
  jpeg_decompress_struct info = {};
  Tracer tracer;
  info.err = jpeg_std_error(&tracer.base);
  info.err->trace_level = 3;
  tracer.base.error_exit = stop;
  tracer.base.emit_message = noteMessage;
  tracer.base.output_message = dropMessage;
  const long long pixels = decode(info, tracer, data, size, mostPixels);
  jpeg_destroy_decompress(&info);
  return pixels;
}
