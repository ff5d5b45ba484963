// Rows of a decoded file, one, three or four bytes a pixel, into rows of an image.
#pragma once

#include "image/TIppiImage.h"

// Rows of a file, top row first.
struct DecodedRows {
  const unsigned char* data;
  int step;      // bytes from row to row
  int channels;  // 1, 3 or 4
  int count;
};

// True when a row of the file and a row of the image hold the same bytes, so that a decoder may write
// into the image itself.
inline bool sameLayout(int channels, TIppiImageMode mode) {
  return (channels == 1 && mode == imGray8) || (channels == 3 && mode == imRGB24);
}

// The image row of picture row `y`, counted from the top.
inline unsigned char* pictureRow(const TIppiImage& image, int y) {
  return image.Pixels + static_cast<long long>(image.Height - 1 - y) * image.Step;
}

// Converts the rows into picture rows `y` and on of an 8-bit image. The fourth channel reaches the image
// only with `takeAlpha`; otherwise an imRGBA32 image keeps the alpha that it has.
void convertRows(const DecodedRows& rows, TIppiImage& image, int y, bool takeAlpha);
