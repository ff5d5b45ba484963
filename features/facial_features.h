// The forty points of a face, in pixels of a gray image. The codes are those of vizl_api.h; exceptions of memory and
// sizes pass through.
#pragma once

class TIppiImage;
struct TFacePosition;
struct TPoint;

// Searches the points of the face at `face`. VIZLE_OK, or VIZLE_INVALID_ARGUMENT with nothing written for a position
// that TFaceImage::Cut refuses. `confidences` may be null; `context` has no effect.
int DetectFacialFeaturesInRegion(TIppiImage* image, const TFacePosition* face, TPoint (*points)[40],
                                 float (*confidences)[40], int context);

// Finds the strongest face first. After VIZLE_NO_FACE the points are all 0 and the confidences as they were.
int DetectFacialFeatures(TIppiImage* image, TPoint (*points)[40], float (*confidences)[40], int context);
