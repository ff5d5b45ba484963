// The memory of large pictures, kept for the next one.
//
// The system hands out large memory unmapped and zeroes it page by page while it is first written, which costs about
// as much as writing it twice: 12 of the 53 ms in which a 12-megapixel JPEG file was loaded. A program that takes one
// picture after the other saves that from the second on.
#pragma once

#include <cstddef>

struct TPixelBuffer {
  void* memory;  // null: there is none to be had
  bool isZero;   // else it holds what it held
};

TPixelBuffer takePixelBuffer(std::size_t bytes);
// Ends a buffer of takePixelBuffer. Null does nothing. Up to 128 MiB in eight buffers are kept.
void givePixelBuffer(void* memory);
// Returns what is kept to the system.
void releaseSpareBuffers();
