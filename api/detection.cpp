// Faces in the picture of a handle.
#include "api/exported.h"
#include "api/handles.h"
#include "detect/detect_face.h"
#include "image/params.h"

namespace {

// Holds a detection's confidence and stores it for the process at the end of the scope, so that a detection that
// found nothing, or was cut short by a lack of memory, leaves 0.
struct TConfidence {
  int value = 0;
  ~TConfidence() { StoreDetectedFaceConfidence(value); }
};

}  // namespace

int32_t VIZL_DetectFace(HImage image, TFacePosition* position) { return VIZL_DetectFace_C(image, position, 0); }

int32_t VIZL_DetectFace_C(HImage image, TFacePosition* position, ContextID context) {
  return Exported([=] {
    ippiImgStruct* record = FindImage(image);
    if (record == nullptr || position == nullptr) return VIZLE_INVALID_ARGUMENT;
    TIppiImage* copy = DetectionCopyOf(*record);
    TConfidence confidence;
    return DetectFace(copy, position, confidence.value, context);
  });
}

int32_t VIZL_DetectMultipleFaces(HImage image, int32_t* count, TFacePosition* faces, int32_t maxSizeInBytes) {
  return VIZL_DetectMultipleFaces_C(image, count, faces, maxSizeInBytes, 0);
}

int32_t VIZL_DetectMultipleFaces_C(HImage image, int32_t* count, TFacePosition* faces, int32_t maxSizeInBytes,
                                   ContextID context) {
  return Exported([=] {
    ippiImgStruct* record = FindImage(image);
    if (record == nullptr || count == nullptr || faces == nullptr) return VIZLE_INVALID_ARGUMENT;
    if (maxSizeInBytes < static_cast<int32_t>(sizeof(TFacePosition))) return VIZLE_BUFFER_TOO_SMALL;
    return DetectMultipleFaces(DetectionCopyOf(*record), count, faces, maxSizeInBytes, context);
  });
}
