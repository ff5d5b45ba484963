// Puts a picture with alpha onto a ground of one colour.
#ifndef APPS_PORTRAITCUT_FLATTEN_H
#define APPS_PORTRAITCUT_FLATTEN_H

#include "geometry.h"
#include "picture.h"

// As a viewer shows it: whatever colours lie under transparent pixels are gone. Throws Failure.
Picture flatten(const Picture& withAlpha, Colour ground);

#endif
