// Reads the orientation tag of a picture file.
#ifndef APPS_PORTRAITCUT_EXIF_H
#define APPS_PORTRAITCUT_EXIF_H

#include <span>

#include "orientation.h"

// From the Exif segment of a JPEG file or the eXIf chunk of a PNG file. Upright if there is none, or none that can be
// understood: a damaged tag is no reason to refuse a picture.
Orientation exifOrientation(std::span<const unsigned char> file);

#endif
