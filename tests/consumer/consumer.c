/* Uses the installed library as an application would. The argument is the version that it should have. */
#include <pc_api.h>
#include <stdio.h>
#include <string.h>
#include <vizl_api.h>

enum { kWidth = 40, kHeight = 30 };

static int failed(const char* what) {
  fprintf(stderr, "consumer: %s\n", what);
  return 1;
}

int main(int argc, char** argv) {
  static unsigned char gray[kWidth * kHeight];
  HImage image;
  HImage small;
  TFacePosition face;
  int32_t width = 0;
  int32_t height = 0;

  if (argc != 2 || strcmp(VIZL_GetVersion(), argv[1]) != 0) return failed("another version");
  if (pcInitialize() != VIZLE_OK) return failed("cannot initialise");
  if (VIZL_LoadImageFromBuffer(&image, gray, kWidth, kHeight, kWidth, VIZL_IMAGE_GRAY8) != VIZLE_OK ||
      VIZL_CreateEmptyImage(&small) != VIZLE_OK || VIZL_ResizeImage(image, 0.51, small) != VIZLE_OK) {
    return failed("cannot make and resize an image");
  }
  VIZL_GetImageWidth(small, &width);
  VIZL_GetImageHeight(small, &height);
  if (width != 20 || height != 15) return failed("wrong size");
  if (VIZL_DetectFace(small, &face) != VIZLE_IMAGE_TOO_SMALL) return failed("15 rows are too few");
  return pcFinalize() == VIZLE_OK ? 0 : failed("cannot finalise");
}
