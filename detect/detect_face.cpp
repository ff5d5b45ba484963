#include "detect/detect_face.h"

#include "api/vizl_api.h"
#include "detect/TIppiFaceDetector.h"
#include "image/TIppiImage.h"

namespace {

// The window of the cascade: nothing smaller can hold a face.
constexpr int kMinImageSide = 20;

bool tooSmall(const TIppiImage& image) { return image.Width < kMinImageSide || image.Height < kMinImageSide; }

}  // namespace

int DetectFace(TIppiImage* image, TFacePosition* position, int& confidence, int context) {
  if (image == nullptr || position == nullptr || IppiFaceDetector == nullptr) return VIZLE_INVALID_ARGUMENT;
  if (tooSmall(*image)) return VIZLE_IMAGE_TOO_SMALL;
  IppiFaceDetector->DetectFace(*image, nullptr, position->xc, position->yc, position->w, position->angle, confidence,
                               context);
  return position->w == 0 ? VIZLE_NO_FACE : VIZLE_OK;
}

int DetectMultipleFaces(TIppiImage* image, int* count, TFacePosition* faces, int maxSizeInBytes, int context) {
  if (image == nullptr || count == nullptr || faces == nullptr || IppiFaceDetector == nullptr) {
    return VIZLE_INVALID_ARGUMENT;
  }
  if (tooSmall(*image)) return VIZLE_IMAGE_TOO_SMALL;
  IppiFaceDetector->DetectMultipleFaces(*image, nullptr, *count, faces, maxSizeInBytes, context);
  return *count == 0 ? VIZLE_NO_FACE : VIZLE_OK;
}
