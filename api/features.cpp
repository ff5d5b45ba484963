// The forty points of a face in the picture of a handle.
#include "api/exported.h"
#include "api/handles.h"
#include "features/facial_features.h"

int32_t VIZL_DetectFacialFeatures(HImage image, TPoint (*points)[40]) {
  return VIZL_DetectFacialFeatures_C(image, points, 0);
}

int32_t VIZL_DetectFacialFeatures_C(HImage image, TPoint (*points)[40], ContextID context) {
  return VIZL_DetectFacialFeaturesEx_C(image, points, nullptr, context);
}

int32_t VIZL_DetectFacialFeaturesEx(HImage image, TPoint (*points)[40], float (*confidences)[40]) {
  return VIZL_DetectFacialFeaturesEx_C(image, points, confidences, 0);
}

int32_t VIZL_DetectFacialFeaturesEx_C(HImage image, TPoint (*points)[40], float (*confidences)[40], ContextID context) {
  return Exported([=] {
    ippiImgStruct* record = FindImage(image);
    if (record == nullptr || points == nullptr) return VIZLE_INVALID_ARGUMENT;
    return DetectFacialFeatures(DetectionCopyOf(*record), points, confidences, context);
  });
}

int32_t VIZL_DetectFacialFeaturesInRegion(HImage image, const TFacePosition* face, TPoint (*points)[40]) {
  return VIZL_DetectFacialFeaturesInRegion_C(image, face, points, 0);
}

int32_t VIZL_DetectFacialFeaturesInRegion_C(HImage image, const TFacePosition* face, TPoint (*points)[40],
                                            ContextID context) {
  return VIZL_DetectFacialFeaturesInRegionEx_C(image, face, points, nullptr, context);
}

int32_t VIZL_DetectFacialFeaturesInRegionEx(HImage image, const TFacePosition* face, TPoint (*points)[40],
                                            float (*confidences)[40]) {
  return VIZL_DetectFacialFeaturesInRegionEx_C(image, face, points, confidences, 0);
}

int32_t VIZL_DetectFacialFeaturesInRegionEx_C(HImage image, const TFacePosition* face, TPoint (*points)[40],
                                              float (*confidences)[40], ContextID context) {
  return Exported([=] {
    ippiImgStruct* record = FindImage(image);
    if (record == nullptr || face == nullptr || points == nullptr) return VIZLE_INVALID_ARGUMENT;
    return DetectFacialFeaturesInRegion(DetectionCopyOf(*record), face, points, confidences, context);
  });
}
