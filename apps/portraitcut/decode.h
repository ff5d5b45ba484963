// From the bytes of a picture file to an upright picture.
#ifndef APPS_PORTRAITCUT_DECODE_H
#define APPS_PORTRAITCUT_DECODE_H

#include <span>

#include "geometry.h"
#include "orientation.h"
#include "picture.h"

struct UprightPicture {
  Picture picture;
  Orientation orientation;  // as stored in the file
};

// What the bytes are, whatever the file's name says: JPEG, PNG or BMP. `ground` shows through where a picture is
// transparent. Throws Failure.
UprightPicture decodeUpright(std::span<const unsigned char> file, bool ignoreOrientation, Colour ground);

#endif
