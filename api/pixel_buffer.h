// Pixels between an image and a caller's buffer, whose top row comes first.
#pragma once

#include <cstdint>

#include "api/vizl_api.h"

class TIppiImage;

// Replaces the image by the buffer's pixels, in imRGBA32 for VIZL_IMAGE_COLOR32 and imRGB24 otherwise. Throws
// what TIppiImage::AllocNew throws.
void FillFromBuffer(TIppiImage& image, const unsigned char* buffer, int width, int height, int scanLine,
                    VIZL_IMAGEMODE mode);

// Bytes that WriteToBuffer writes.
int64_t BufferSize(const TIppiImage& image, VIZL_IMAGEMODE mode);

// Writes the rows without padding. An image without pixels writes nothing.
void WriteToBuffer(const TIppiImage& image, unsigned char* buffer, VIZL_IMAGEMODE mode);
