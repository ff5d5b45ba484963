// The eyes of a face whose position is known.
#pragma once

class TIppiImage;
struct TFacePosition;
struct TPoint;

// Finds the eyes in a gray image, which stays as it is, and writes them to points[0] (smaller x in the upright face)
// and points[1], pixels of the image and always inside it. VIZLE_OK, or VIZLE_INVALID_ARGUMENT with nothing written for
// an empty image and for a face that no image can hold.
int DetectEyesInRegion(TIppiImage* image, const TFacePosition* face, TPoint* points);
