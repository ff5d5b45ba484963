/* Follows the eyes of the largest face through raw gray frames, as a camera delivers them:
 *
 *   camera_points WIDTH HEIGHT < FRAMES
 *
 * A frame is HEIGHT rows of WIDTH bytes, top row first. Such a stream comes, for instance, from
 *   ffmpeg -i clip.mp4 -f rawvideo -pix_fmt gray - */
#include <stdio.h>
#include <stdlib.h>
#include <vizl_api.h>

enum { kMaxFaces = 16 };

static TFacePosition largestOf(const TFacePosition* faces, int32_t count) {
  TFacePosition largest = faces[0];
  int32_t k;
  for (k = 1; k < count; ++k) {
    if (faces[k].w > largest.w) largest = faces[k];
  }
  return largest;
}

/* The points of the largest face in one frame. Each frame gets a handle of its own: detection keeps to the picture
 * that it saw first on a handle. */
static int32_t findPoints(const unsigned char* frame, int32_t width, int32_t height, ContextID context,
                          TPoint (*points)[40]) {
  TFacePosition faces[kMaxFaces];
  HImage image;
  int32_t count;
  int32_t code = VIZL_LoadImageFromBuffer(&image, frame, width, height, width, VIZL_IMAGE_GRAY8);
  if (code != VIZLE_OK) return code;
  code = VIZL_DetectMultipleFaces_C(image, &count, faces, sizeof faces, context);
  if (code == VIZLE_OK) {
    const TFacePosition face = largestOf(faces, count);
    code = VIZL_DetectFacialFeaturesInRegion(image, &face, points);
  }
  VIZL_FreeImage(image);
  return code;
}

static void report(long number, int32_t code, TPoint points[40]) {
  if (code == VIZLE_OK) {
    printf("%ld: eyes at (%d, %d) and (%d, %d)\n", number, (int)points[0].x, (int)points[0].y, (int)points[1].x,
           (int)points[1].y);
  } else {
    printf("%ld: %s\n", number, code == VIZLE_NO_FACE ? "no face" : "failed");
  }
}

/* Only upright faces in a small working picture: a camera wants answers fast. */
static int32_t makeFastContext(ContextID* context) {
  const int32_t code = VIZL_CreateContext_ID(context);
  return code == VIZLE_OK ? VIZL_SetFaceDetectionParameters_C(false, false, 256, *context) : code;
}

static int follow(int32_t width, int32_t height) {
  const size_t size = (size_t)width * (size_t)height;
  unsigned char* const frame = malloc(size);
  TPoint points[40];
  ContextID context;
  long number = 0;
  if (frame == NULL) return 1;
  if (makeFastContext(&context) == VIZLE_OK) {
    for (; fread(frame, 1, size, stdin) == size; ++number) {
      report(number, findPoints(frame, width, height, context, &points), points);
    }
    VIZL_FreeContext_ID(context);
  }
  free(frame);
  return number == 0;
}

int main(int argc, char** argv) {
  const int32_t width = argc == 3 ? atoi(argv[1]) : 0;
  const int32_t height = argc == 3 ? atoi(argv[2]) : 0;
  int failed;
  if (width < 1 || height < 1) {
    fprintf(stderr, "usage: camera_points WIDTH HEIGHT < FRAMES\n");
    return 2;
  }
  if (VIZL_Initialize(NULL) != VIZLE_OK) return 1;
  failed = follow(width, height);
  VIZL_Finalize();
  return failed;
}
