#include "codecs/jpeg_errors.h"

namespace {

void jumpOut(j_common_ptr codec) { std::longjmp(reinterpret_cast<JpegErrors*>(codec->err)->jump, 1); }

void dropMessage(j_common_ptr) {}

void dropTrace(j_common_ptr, int) {}

}  // namespace

jpeg_error_mgr* installJpegErrors(JpegErrors& errors) {
  jpeg_error_mgr* const base = jpeg_std_error(&errors.base);
  base->error_exit = jumpOut;
  base->output_message = dropMessage;
  base->emit_message = dropTrace;
  return base;
}
