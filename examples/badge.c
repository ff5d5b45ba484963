/* Makes a badge: the portrait of the largest face in a picture, with a soft edge, on a ground of evening light whose
 * colours it takes on.
 *
 *   badge INPUT OUTPUT
 */
#include <math.h>
#include <stdio.h>
#include <stdlib.h>
#include <vizl_api.h>

enum { kWidth = 240, kHeight = 320, kBorder = 20, kGroundWidth = kWidth + 2 * kBorder, kGroundHeight = 400 };

typedef struct Light {
  double red, green, blue;
} Light;

/* From 255 inside an ellipse to 0 at its edge. Putting the overlay raises alpha 3.375 times, so that what is seen as
 * the soft edge are the values up to 75. */
static unsigned char ovalAlpha(int x, int y) {
  const double u = (x + 0.5) / kWidth * 2 - 1;
  const double v = (y + 0.5) / kHeight * 2 - 1;
  const double depth = fmax(1 - sqrt(u * u + v * v), 0);
  return (unsigned char)(255 * fmin(4 * depth * depth, 1));
}

static void makeSoft(unsigned char* pixels) {
  int x, y;
  for (y = 0; y < kHeight; ++y) {
    for (x = 0; x < kWidth; ++x) pixels[4 * (y * kWidth + x) + 3] = ovalAlpha(x, y);
  }
}

/* Warm from the upper left, dusk towards the lower right, and a bar for the name. */
static void paintGround(unsigned char* pixels) {
  static const Light warm = {255, 196, 120}, dusk = {72, 66, 128};
  int x, y;
  for (y = 0; y < kGroundHeight; ++y) {
    for (x = 0; x < kGroundWidth; ++x) {
      const double t = (0.6 * x / kGroundWidth + 1.0 * y / kGroundHeight) / 1.6;
      const double shade = y < kGroundHeight - 2 * kBorder ? 1 : 0.55;
      unsigned char* pixel = pixels + 4 * (y * kGroundWidth + x);
      pixel[0] = (unsigned char)(shade * (warm.red + t * (dusk.red - warm.red)));
      pixel[1] = (unsigned char)(shade * (warm.green + t * (dusk.green - warm.green)));
      pixel[2] = (unsigned char)(shade * (warm.blue + t * (dusk.blue - warm.blue)));
      pixel[3] = 255;
    }
  }
}

/* `portrait` becomes a picture with alpha. */
static int32_t soften(HImage portrait) {
  static unsigned char pixels[4 * kWidth * kHeight];
  const int32_t code = VIZL_SaveImageToBuffer(portrait, pixels, VIZL_IMAGE_COLOR32);
  if (code != VIZLE_OK) return code;
  makeSoft(pixels);
  return VIZL_AssignImageFromBuffer(portrait, pixels, kWidth, kHeight, 4 * kWidth, VIZL_IMAGE_COLOR32);
}

static int32_t makeGround(HImage* ground) {
  static unsigned char pixels[4 * kGroundWidth * kGroundHeight];
  paintGround(pixels);
  return VIZL_LoadImageFromBuffer(ground, pixels, kGroundWidth, kGroundHeight, 4 * kGroundWidth, VIZL_IMAGE_COLOR32);
}

static int32_t makeBadge(const char* input, const char* output) {
  HImage picture, portrait, ground;
  int32_t code = VIZL_LoadImageFromFile(&picture, input);
  if (code == VIZLE_OK) code = VIZL_CreateEmptyImage(&portrait);
  if (code == VIZLE_OK) code = VIZL_PortraitCut(picture, kWidth, kHeight, 0.85, 0, 0, false, portrait);
  if (code == VIZLE_OK) code = soften(portrait);
  if (code == VIZLE_OK) code = makeGround(&ground);
  if (code == VIZLE_OK) code = VIZL_PutImageAdjustColors(portrait, kBorder, kBorder, ground, ground);
  return code == VIZLE_OK ? VIZL_SaveImageToFile(ground, output) : code;
}

int main(int argc, char** argv) {
  int32_t code;
  if (argc != 3) {
    fprintf(stderr, "usage: badge INPUT OUTPUT\n");
    return 2;
  }
  code = VIZL_Initialize(NULL);
  if (code == VIZLE_OK) code = makeBadge(argv[1], argv[2]);
  VIZL_Finalize();
  if (code != VIZLE_OK) {
    fprintf(stderr, "badge: %s: %s (code %d)\n", argv[1], code == VIZLE_NO_FACE ? "no face found" : "failed",
            (int)code);
    return 1;
  }
  return 0;
}
