// The memory of large pictures, kept for the next one.
//
// The system hands out large memory zeroed and not yet mapped, which costs about as much as writing it twice: 7 of
// the 46 ms in which a 12-megapixel JPEG file was loaded. A program that takes one picture after the other saves that
// from the second on. At most two buffers of up to 64 MiB are kept, until VIZL_Finalize.
#pragma once

#include <cstddef>

struct TPixelBuffer {
  void* memory;  // null: there is none to be had
  bool isZero;   // else it holds what it held
};

TPixelBuffer takePixelBuffer(std::size_t bytes);
// Ends a buffer of takePixelBuffer; `bytes` is what was asked for. Null does nothing.
void givePixelBuffer(void* memory, std::size_t bytes);
// Returns what is kept to the system.
void releaseSpareBuffers();
