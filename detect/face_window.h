// What the single-face and the multiple-face detector share: the working size, the centre and width of a
// rectangle, and the search over fine angles.
#pragma once

#include "detect/TRectangle.h"
#include "image/to_int.h"

class TIppiFaceDetector;
class TIppiImage;

// Centre and width (the mean of both sides) of a face, in pixels, rows from the top.
struct FaceWindow {
  int xc;
  int yc;
  int w;
};

FaceWindow WindowOf(const TRectangle& rect);

// Factor from the image to the working image, whose longer side fits the context's InternalResizeWidth and
// whose shorter side two thirds of it.
double WorkingRatio(const TIppiImage& image, int context);

// Degrees that a pass of TMultiFaceDetector stands for.
double CoarseAngle(int pass);

// Side of the crop on which the fine search runs, in pixels before the floor of Resize.
constexpr double kCropSide = 80.0;

struct FineResult {
  TRectangle rect = {0, 0, 0, 0};  // in pixels of the crop
  int count = 0;
  double angle = 0.0;
};

// Cuts out twice the face's width around its centre and scans it turned by coarse + k * 1.5 degrees for k
// from -steps to +steps. The lowest of equally good angles wins; a count of 0 means that none holds up.
FineResult SearchAngles(TIppiFaceDetector& detector, TIppiImage& image, const FaceWindow& face, double coarse,
                        int steps, int context);
constexpr int kFineSteps = 7;
