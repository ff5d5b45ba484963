// libjpeg's input from a buffer in memory.
#pragma once

#include "codecs/jpeg_library.h"

// Makes the buffer, which stays the caller's, the decoder's input. A buffer that ends early is followed by
// an end-of-image marker; an empty one suspends the decoder.
void jpeg_myreader_src(jpeg_decompress_struct* cinfo, const unsigned char* data, int size);
