// Windows bitmap files.
#pragma once

struct RGBApixel {
  unsigned char Blue;
  unsigned char Green;
  unsigned char Red;
  unsigned char Alpha;
};

// A whole picture as columns of pixels from the top down. Reads all depths, uncompressed and bottom-up
// only. Allocation failures throw std::bad_alloc with the object left as a valid picture.
class BMP {
 public:
  int BitDepth = 24;
  int Width = 0;
  int Height = 0;
  RGBApixel* Colors = nullptr;  // palette of 2^BitDepth entries for depths 1, 4 and 8
  int XPelsPerMeter = 0;
  int YPelsPerMeter = 0;
  RGBApixel** Pixels = nullptr;  // Pixels[x][y], y from the top; the columns lie one after the other

  // One white pixel, depth 24.
  BMP();
  ~BMP();
  BMP(const BMP&) = delete;
  BMP& operator=(const BMP&) = delete;

  // A white picture. False, without a change, for a side below 1 and for sizes above the limits of images.
  bool SetSize(int width, int height);
  // False, without a change, unless depth is 1, 4, 8, 16, 24 or 32. A palette is made white.
  bool SetBitDepth(int depth);
  int TellBitDepth() { return BitDepth; }
  int TellWidth() { return Width; }
  int TellHeight() { return Height; }

  // False for a file that is no bitmap or of an unsupported kind. A file cut off in its pixels counts as
  // read, with the rows that it lacks white; only huge pictures (above 2^26 pixels) must be there at least
  // to a sixteenth.
  bool ReadFromFile(const char* name);
  // Depths 1, 4 and 8 take the nearest palette colour. False when the file can't be created; a disk that
  // fills up is not reported, but leaves an empty file.
  bool WriteToFile(const char* name);

 private:
  // New pixels, all bytes zero; the old ones stay when this fails.
  bool AllocPixels(int width, int height);
  void FreePixels();
  // The state after a damaged header.
  bool Fail();
};
