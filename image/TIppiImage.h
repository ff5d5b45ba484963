// The one image class of the library.
#pragma once

#include "primitives/ippdefs.h"

class BMP;

enum TIppiImageMode {
  imGray8 = 0,    // 1 byte a pixel
  imRGB24 = 1,    // red, green, blue
  imRGBA32 = 2,   // red, green, blue, alpha (255 is opaque)
  imGray32f = 3,  // 1 float
  imRGB32f = 4,   // 3 floats
  imRGBA32f = 5   // 4 floats
};

// Largest side of an image. JPEG and the primitives' 32-bit steps both end near here.
constexpr int kMaxImageSide = 65535;
// Largest buffer of an image: SizeBytes is a signed 32-bit number.
constexpr long long kMaxImageBytes = 2147483647;

// A rectangular pixel buffer that it owns. Rows lie bottom row first: picture row y (from the top) is
// buffer row Height - 1 - y. Each row has room for 28 to 31 pixels more than Width, so that kernels may
// read whole vectors at its end.
//
// An image is empty while Pixels is null. A size that is negative gives an empty image of 0 by 0; a size
// above the limits makes AllocNew throw std::length_error and lack of memory std::bad_alloc, in both
// cases with the image left empty.
class TIppiImage {
 public:
  unsigned char* Pixels = nullptr;
  float* PixelsF = nullptr;   // always the same address as Pixels
  int Width = 0;              // columns
  int Height = 0;             // rows
  IppiSize RoiSize = {0, 0};  // Width and Height, but for a height of 1 during a row by row load
  int Step = 0;               // bytes from row to row
  int SizeBytes = 0;          // Step times Height
  TIppiImageMode Mode = imGray8;
  bool FloorResize = true;  // in the destination of a Resize: sides are floored, not rounded

  TIppiImage() = default;
  explicit TIppiImage(TIppiImageMode mode) : Mode(mode) {}
  TIppiImage(const TIppiImage&) = delete;
  TIppiImage& operator=(const TIppiImage&) = delete;

  // Gives the image a zeroed buffer (alpha 255 in imRGBA32) in its present Mode.
  void AllocNew(int width, int height);
  // The same for a caller that sets every pixel, alpha too: the pixels may hold anything, the padding is zero.
  void AllocToFill(int width, int height);
  // Releases the buffer; Width, Height, Step and Mode stay.
  void FreeImage();

  // Exchanges everything but FloorResize.
  void Swap(TIppiImage& other) noexcept;

  // In all operations the same image may be source and destination: it then works as through a temporary.

  // Exact copy, Mode included. Float images come out zero: only the 8-bit modes are copied.
  void Assign(TIppiImage& src);
  // Copy into this image's own Mode: the same mode, colour to gray, or 8 bits to floats of the same
  // channels. Any other pair leaves zeros of the right size.
  void CopyFrom(TIppiImage& src);

  // BMP files; 0, or -1 on failure.
  int LoadFromFile(const char* name);
  int SaveToFile(const char* name);
  // JPEG and PNG; 0 or a negative value of their own. The picture takes this image's present Mode.
  int LoadFromJpegBuffer(const unsigned char* data, unsigned int size);
  int LoadFromJpegFile(const char* fileName);
  int LoadFromPngBuffer(const unsigned char* data, unsigned int size);
  int LoadFromPngFile(const char* fileName);
  int SaveToJpegFile(const char* fileName, int context);
  int SaveToPngFile(const char* fileName);

  virtual void LoadFromBitmap(BMP& bmp);
  virtual void SaveToBitmap(BMP& bmp);
  virtual void Resize(TIppiImage& dest, double ratio, int unused, int interpolation);
  virtual void Rotate(TIppiImage& dest, double angle);
  virtual void RotateCenter(TIppiImage& dest, double angle, double xCenter, double yCenter);
  virtual void CopyTo(TIppiImage& dest, int x1, int y1, int x2, int y2, bool keepDest);
  virtual void CopyToReplicateBorder(TIppiImage& dest, int x1, int y1, int x2, int y2, bool keepDest);
  virtual ~TIppiImage();

  void Resize(TIppiImage& dest, double ratio);
  void CopyTo(TIppiImage& dest, int x1, int y1, int x2, int y2) { CopyTo(dest, x1, y1, x2, y2, false); }
  void CopyToReplicateBorder(TIppiImage& dest, int x1, int y1, int x2, int y2) {
    CopyToReplicateBorder(dest, x1, y1, x2, y2, false);
  }
  // Fills the alpha channel of an imRGBA32 image from an imGray8 image of at least this size.
  void AddAlpha(TIppiImage& alpha);
  // Composites this image over `back` into the same place of `result`, all imRGBA32; (x, y) is where the
  // top left pixel falls, y from the top. The last column and the top row of the overlap are left out.
  void PutOver(TIppiImage& back, TIppiImage& result, int x, int y);

  // Brings the brightness of each colour channel to that of `other`, which is to have the same size, pixel by pixel
  // by local means, then multiplies alpha by 3.375. 0, or -1 with nothing changed unless both are imRGBA32. Where
  // the sizes differ, the rows that both have are matched.
  int AdjustLevelsWithAlpha(TIppiImage& other);
  // One channel (0 to 2) of that: `image` is divided by the ratio of its local means to those of `other`. The float
  // has no effect.
  static void AdjustLevelsWithAlphaSingleChannel(TIppiImage& other, TIppiImage& image, int channel, float,
                                                 TIppiImage& otherSmall, TIppiImage& imageSmall, TIppiImage& otherLarge,
                                                 TIppiImage& imageLarge);

  // Divides each colour channel by one ratio, so that its mean over the central thirds comes to that of `other`.
  void AdjustLevelsWith(TIppiImage& other);
  // The same for one channel.
  void AdjustLevelsSingleChannelTest(TIppiImage& other, int channel);
  // The same for one channel of `target`. Nothing happens if either is not of an 8-bit mode or lacks the channel, or
  // if the reference has fewer than 3 rows. Sizes that differ count as far as both images reach.
  static void AdjustLevelsSingleChannel(TIppiImage& reference, TIppiImage& target, int channel);

 private:
  // Gives the image a buffer and tells whether it is zero.
  bool TakeBuffer(int width, int height);
  void SetSizeFields(int width, int height, int step);
};
