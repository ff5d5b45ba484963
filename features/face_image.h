// The picture in which the facial points are searched, and the ways between it and the image.
#pragma once

#include "features/TGrid.h"
#include "image/TIppiImage.h"

struct TFacePosition;

// Side of the square, in pixels. At this size the mean face is 150 pixels wide.
constexpr int kFaceImageSide = 256;

// A face cut out of a gray image, turned upright and scaled to 256 by 256 pixels, as the node networks know it.
// The search and the training both get their pixels from here.
//
// The way goes over two crops: a wide one around the place where the detector says the face is, reduced to 256
// pixels and turned upright, and out of that the frame proper. Every crop may reach outside its image and is black
// there. The last resize can leave the top row and the right column of Face black: it fills what the rounded scale
// covers.
class TFaceImage {
 public:
  TIppiImage Face{imGray8};
  TGrid Expected;  // where the mean face lies in Face, by the face's position

  // Makes Face and Expected. VIZLE_OK, or VIZLE_INVALID_ARGUMENT for a negative width, an angle that is no finite
  // number and a face that lies so far out or is so wide that no image holds its crop; the object is then of no use.
  // Exceptions of memory and sizes pass through.
  int Cut(TIppiImage& image, const TFacePosition& face);

  // From pixels of Face to pixels of the image, into which every node is moved. The grid turns about its own middle
  // here, the picture in Cut about its own: points of a tilted face come out some pixels off, and the more so the
  // farther the face lies from the crop's middle.
  void BackToImage(TGrid& grid) const;

  // Where a point of the image is seen in Face, to within half a pixel. Not the inverse of BackToImage, see there.
  TSPoint PointInFace(TSPoint point) const;

 private:
  bool ExpectGrid(const TFacePosition& face);
  int CutWide(TIppiImage& image, TIppiImage& reduced);
  void TurnUpright(TIppiImage& reduced, TIppiImage& upright);
  void CutFrame(TIppiImage& upright);

  IppiSize imageSize = {0, 0};
  // The wide crop: its first pixel in the image, its size, its scale, and its size once scaled.
  int wideLeft = 0, wideTop = 0;
  IppiSize wideSize = {0, 0};
  float wideScale = 1;
  IppiSize reducedSize = {0, 0};
  float angle = 0;  // radians from the eyes' line to the horizontal
  // The frame: its first pixel in the upright picture, its side and its scale.
  int frameLeft = 0, frameTop = 0;
  int frameSide = 0;
  float frameScale = 1;
};
