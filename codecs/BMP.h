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
  RGBApixel* Colors = nullptr;    // palette of 2^BitDepth entries for depths 1, 4 and 8
  int XPelsPerMeter = 0;
  int YPelsPerMeter = 0;
  RGBApixel** Pixels = nullptr;   // Pixels[x][y], y from the top

  BMP();
  ~BMP();
  BMP(const BMP&) = delete;
  BMP& operator=(const BMP&) = delete;

  bool SetSize(int width, int height);
  bool SetBitDepth(int depth);
  int TellBitDepth() { return BitDepth; }
  int TellWidth() { return Width; }
  int TellHeight() { return Height; }
  bool ReadFromFile(const char* name);
  bool WriteToFile(const char* name);
};
