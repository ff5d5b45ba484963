// The library's searches, set up by the options.
#ifndef APPS_PORTRAITCUT_FACES_H
#define APPS_PORTRAITCUT_FACES_H

#include <vector>

#include "options.h"
#include "picture.h"
#include "result.h"

// Sets how this process searches. Throws Failure.
void applySettings(const DetectionOptions& options, int jpegQuality);

// All faces of at least the asked size, the largest first; none is no failure. Of two that share a place, as the search
// sometimes tells one face, the larger stays.
std::vector<TFacePosition> findFaces(const Picture& picture, int minimumFace);

// One face by its number, all for 0. Throws Failure if there is none.
std::vector<TFacePosition> chooseFaces(std::vector<TFacePosition> faces, int number);

FacePoints findPoints(const Picture& picture, const TFacePosition& face);
std::array<TPoint, 2> findEyes(const Picture& picture, const TFacePosition& face);

#endif
