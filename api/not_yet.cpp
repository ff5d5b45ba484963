// Functions of the interface whose work is still to come. They refuse every call.
#include "api/vizl_api.h"

int32_t VIZL_PutImageAdjustColors(HImage, int32_t, int32_t, HImage, HImage) { return VIZLE_INVALID_ARGUMENT; }

int32_t VIZL_DetectEyesInRegion(HImage, const TFacePosition*, TPoint (*)[40]) { return VIZLE_INVALID_ARGUMENT; }

int32_t VIZL_DetectEyesInRegion_C(HImage, const TFacePosition*, TPoint (*)[40], ContextID) {
  return VIZLE_INVALID_ARGUMENT;
}
