/* Prints the forty points of the strongest face in a picture file, one a line: number, x, y, confidence.
 *
 *   face_points INPUT */
#include <stdio.h>
#include <vizl_api.h>

static int32_t printPoints(const char* fileName) {
  TPoint points[40];
  float confidences[40];
  HImage image;
  int32_t code = VIZL_LoadImageFromFile(&image, fileName);
  int k;
  if (code == VIZLE_OK) code = VIZL_DetectFacialFeaturesEx(image, &points, &confidences);
  if (code != VIZLE_OK) return code;
  for (k = 0; k < 40; ++k) {
    printf("%d %d %d %.3f\n", k, (int)points[k].x, (int)points[k].y, (double)confidences[k]);
  }
  return VIZL_FreeImage(image);
}

int main(int argc, char** argv) {
  int32_t code;
  if (argc != 2) {
    fprintf(stderr, "usage: face_points INPUT\n");
    return 2;
  }
  code = VIZL_Initialize(NULL);
  if (code == VIZLE_OK) {
    code = printPoints(argv[1]);
    VIZL_Finalize(); /* frees the images too */
  }
  if (code == VIZLE_OK) return 0;
  fprintf(stderr, "face_points: %s: %s (code %d)\n", argv[1], code == VIZLE_NO_FACE ? "no face found" : "failed",
          (int)code);
  return 1;
}
