// The upright crop around a face in which the eyes are searched.
#pragma once

class TIppiImage;
struct TFacePosition;
struct TPoint;

// Replaces the gray `image` by the square around the face (0.4 face widths above its centre, 0.7 below), scaled to
// `size` pixels; what lies outside the image is black. The face's angle is not used.
//   features  the featureCount points move along into the crop; may be null
//   scale     pixels of the crop by pixels of the image
//   left, top  the crop's first pixel, in pixels of the image
// VIZLE_OK, or VIZLE_INVALID_ARGUMENT with nothing changed for a negative width and for a square or size that no
// image can have. Exceptions of memory pass through, also with nothing changed.
int CropFaceAdjustFeatures(TIppiImage* image, TFacePosition face, int size, TPoint* features, int featureCount,
                           float* scale, int* left, int* top);

// The same crop into an image of its own. `image` is only read, so a large picture need not be copied first.
int CropFace(TIppiImage* image, TFacePosition face, int size, TIppiImage* crop, float* scale, int* left, int* top);
