// Detection with its arguments checked, in pixels of `image`. The codes are those of vizl_api.h;
// exceptions of memory and sizes pass through.
#pragma once

class TIppiImage;
struct TFacePosition;

// The strongest face. `confidence` stays as it was if the coarse search finds nothing.
int DetectFace(TIppiImage* image, TFacePosition* position, int& confidence, int context);
// Every face, as far as `maxSizeInBytes` has room for records.
int DetectMultipleFaces(TIppiImage* image, int* count, TFacePosition* faces, int maxSizeInBytes, int context);
