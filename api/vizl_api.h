/* The image-handle interface of libportraitcut. */
#ifndef VIZL_API_H
#define VIZL_API_H

#include <stdbool.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

#define VIZLE_OK 0
#define VIZLE_INVALID_ARGUMENT (-4)
#define VIZLE_IMAGE_IO_FAILED (-5)
#define VIZLE_IMAGE_TOO_SMALL (-6)
#define VIZLE_NO_FACE (-7)
#define VIZLE_BUFFER_TOO_SMALL (-8)
#define VIZLE_UNKNOWN_EXTENSION (-9)
#define VIZLE_CANNOT_OPEN_FILE (-10)
#define VIZLE_CANNOT_CREATE_FILE (-11)
#define VIZLE_BAD_IMAGE_FILE (-12)

typedef uint32_t HImage;
typedef int32_t ContextID;

typedef struct TFacePosition {
  int32_t xc;
  int32_t yc;
  int32_t w;
  int32_t Reserved;
  double angle;
} TFacePosition;

typedef struct TPoint {
  int32_t x;
  int32_t y;
} TPoint;

#ifdef __cplusplus
}
#endif

#endif
