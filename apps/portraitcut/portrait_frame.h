// From a face to the rectangle of its portrait.
#ifndef APPS_PORTRAITCUT_PORTRAIT_FRAME_H
#define APPS_PORTRAITCUT_PORTRAIT_FRAME_H

#include "options.h"
#include "result.h"

// The frame as asked for, before the picture's borders are looked at: a centre in whole pixels and half sides.
struct NaturalFrame {
  int32_t xc = 0;
  int32_t yc = 0;
  double halfWidth = 0;
  double halfHeight = 0;
};

// Whether the points of the face are needed.
bool framingNeedsPoints(Framing framing);

// The frame without face scale, with the shift. `points` may be null where the framing needs none. Throws Failure for
// a frame that is too large.
NaturalFrame naturalFrame(const CutOptions& options, const TFacePosition& face, const FacePoints* points);

// The frame at the face scale, wherever it reaches.
Frame freeFrame(const NaturalFrame& natural, double faceScale);

// The frame moved and made smaller until it lies inside the picture. For kFace and kEyes framing it is the frame that
// the library's own portrait cut takes.
Frame heldFrame(const NaturalFrame& natural, double faceScale, Size picture);

#endif
