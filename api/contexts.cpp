// Settings and contexts; the work is done beside the settings.
#include <algorithm>

#include "api/exported.h"
#include "image/params.h"

int32_t VIZL_CreateContext_ID(ContextID* id) {
  return Exported([=] { return CreateContext(id); });
}

int32_t VIZL_FreeContext_ID(ContextID id) {
  return Exported([=] { return FreeContext(id); });
}

int32_t VIZL_SetContextUserField(ContextID id, void* value) {
  return Exported([=] { return SetContextUserField(id, value); });
}

int32_t VIZL_GetContextUserField(ContextID id, void** value) {
  return Exported([=] { return GetContextUserField(id, value); });
}

int32_t VIZL_SetFaceDetectionParameters(bool handleArbitraryRotations, bool determineFaceRotationAngle,
                                        int32_t internalResizeWidth) {
  return VIZL_SetFaceDetectionParameters_C(handleArbitraryRotations, determineFaceRotationAngle, internalResizeWidth,
                                           0);
}

int32_t VIZL_SetFaceDetectionParameters_C(bool handleArbitraryRotations, bool determineFaceRotationAngle,
                                          int32_t internalResizeWidth, ContextID context) {
  return Exported([=] {
    return SetFaceDetectionParameters(handleArbitraryRotations, determineFaceRotationAngle, internalResizeWidth,
                                      context);
  });
}

int32_t VIZL_SetFaceDetectionThreshold(int32_t threshold) { return VIZL_SetFaceDetectionThreshold_C(threshold, 0); }

int32_t VIZL_SetFaceDetectionThreshold_C(int32_t threshold, ContextID context) {
  return Exported([=] {
    if (threshold < 1) return VIZLE_INVALID_ARGUMENT;
    return SetFaceDetectionThreshold(std::max(threshold - 1, 1), threshold, context);
  });
}

int32_t VIZL_SetJpegCompressionQuality(int32_t quality) { return VIZL_SetJpegCompressionQuality_C(quality, 0); }

int32_t VIZL_SetJpegCompressionQuality_C(int32_t quality, ContextID context) {
  return Exported([=] { return SetJpegQuality(quality, context); });
}

int32_t VIZL_GetDetectedFaceConfidence(int32_t* confidence) {
  return Exported([=] {
    if (confidence == nullptr) return VIZLE_INVALID_ARGUMENT;
    *confidence = LoadDetectedFaceConfidence();
    return VIZLE_OK;
  });
}
