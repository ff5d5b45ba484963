// Where a portrait is cut, padding rule included.
#ifndef APPS_PORTRAITCUT_PLACE_PORTRAIT_H
#define APPS_PORTRAITCUT_PLACE_PORTRAIT_H

#include "options.h"
#include "picture.h"
#include "result.h"

// Searches the points of `found.face` where the framing needs them, and fills in `frame` and `asAsked`. Throws Failure
// if the frame leaves the picture and the padding rule is to refuse that.
void placePortrait(const CutOptions& options, const Picture& picture, FaceResult& found);

#endif
