// Functions of the interface whose work is still to come. They refuse every call.
#include "api/vizl_api.h"

int32_t VIZL_PutImageAdjustColors(HImage, int32_t, int32_t, HImage, HImage) { return VIZLE_INVALID_ARGUMENT; }
