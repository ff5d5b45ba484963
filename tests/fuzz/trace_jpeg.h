// A decoder of our own, for the sake of what it tells.
#pragma once

#include <cstdint>

// Notes the form of a JPEG file and every message of libjpeg while it decodes it. The pixels that the file declares;
// above `mostPixels` only its header is read.
long long traceJpeg(const std::uint8_t* data, std::size_t size, long long mostPixels);
