// Portraits against the numbers that standards publish.
#ifndef APPS_PORTRAITCUT_PORTRAIT_CHECK_H
#define APPS_PORTRAITCUT_PORTRAIT_CHECK_H

#include <vector>

#include "options.h"
#include "result.h"

// All measures of a portrait of this size with so many faces, the largest of which has these points.
std::vector<Measure> checkPortrait(Standard standard, Size size, size_t faces, const FacePoints& points);

#endif
