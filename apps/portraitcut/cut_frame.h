// Cuts a frame out of a picture and brings it to a size.
#ifndef APPS_PORTRAITCUT_CUT_FRAME_H
#define APPS_PORTRAITCUT_CUT_FRAME_H

#include "options.h"
#include "picture.h"

// What lies beyond the picture is filled as `padding` says (kFill, kEdge or kMirror). Throws Failure.
Picture cutFrame(const Picture& picture, const Frame& frame, Size size, Padding padding, Colour fill);

#endif
