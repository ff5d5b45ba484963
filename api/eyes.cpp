// The eyes of a face in the picture of a handle.
#include "api/exported.h"
#include "api/handles.h"
#include "eyes/detect_eyes.h"

int32_t VIZL_DetectEyesInRegion(HImage image, const TFacePosition* face, TPoint (*points)[40]) {
  return VIZL_DetectEyesInRegion_C(image, face, points, 0);
}

int32_t VIZL_DetectEyesInRegion_C(HImage image, const TFacePosition* face, TPoint (*points)[40],
                                  ContextID /*context*/) {
  return Exported([=] {
    ippiImgStruct* record = FindImage(image);
    if (record == nullptr || face == nullptr || points == nullptr) return VIZLE_INVALID_ARGUMENT;
    return static_cast<int32_t>(DetectEyesInRegion(DetectionCopyOf(*record), face, *points));
  });
}
