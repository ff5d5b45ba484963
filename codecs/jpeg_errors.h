// libjpeg's error record, made silent and harmless.
#pragma once

#include <csetjmp>

#include "codecs/jpeg_library.h"

// The library's error exit jumps to `jump`, set by the function that calls into libjpeg. Between the two
// no object with a destructor may live.
struct JpegErrors {
  jpeg_error_mgr base;
  std::jmp_buf jump;
};

// Fills the record; the result goes into the codec's `err`.
jpeg_error_mgr* installJpegErrors(JpegErrors& errors);
