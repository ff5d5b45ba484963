// Tells a result in pixels of the picture as it lies in its file, before it was turned upright.
#ifndef APPS_PORTRAITCUT_STORED_COORDINATES_H
#define APPS_PORTRAITCUT_STORED_COORDINATES_H

#include "result.h"

void tellInStoredCoordinates(Result& result);

#endif
