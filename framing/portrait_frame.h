// The rectangle that makes a good portrait of a face, and its cut.
#pragma once

class TIppiImage;
struct TFacePosition;
struct TPoint;

// Inclusive corners in pixels, y from the top of the picture.
struct TPortraitFrame {
  int x1;
  int y1;
  int x2;
  int y2;
};

// How the caller wants the portrait.
struct TPortraitWish {
  int width;  // of the output, pixels
  int height;
  double faceScale;  // zoom: the natural size of the frame is divided by it
  double shiftX;     // of the frame's centre from the face's, in natural widths and heights of the frame
  double shiftY;

  // Sizes of at least a pixel, a scale above 0, all numbers finite.
  bool valid() const;
};

// The face with the largest w, the first of equals. `count` is 1 or more.
const TFacePosition& LargestFace(const TFacePosition* faces, int count);

// The face again, with its centre between the eyes and 2.4 times their distance as its width.
TFacePosition FaceByEyes(const TFacePosition& face, const TPoint& left, const TPoint& right);

// The frame for a face in an image of imageWidth by imageHeight pixels. False, with the frame untouched, if a step
// gives a number that is not finite or that no int holds.
bool CalculatePortraitFrame(const TFacePosition& face, int imageWidth, int imageHeight, const TPortraitWish& wish,
                            TPortraitFrame& frame);

// Cuts the frame out of the image and scales it to exactly width by height. Throws what TIppiImage::AllocNew throws.
void CutPortrait(TIppiImage& image, const TPortraitFrame& frame, int width, int height, TIppiImage& portrait);
