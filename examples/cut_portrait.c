/* Cuts a portrait out of a picture file:
 *
 *   cut_portrait INPUT OUTPUT WIDTH HEIGHT [SCALE]
 *
 * The ends of the names choose the formats (bmp, jpg, png). SCALE 1 leaves some room around the face, 0.6 shows
 * the shoulders, 1.3 comes closer. */
#include <errno.h>
#include <pc_api.h>
#include <stdio.h>
#include <stdlib.h>
#include <vizl_api.h>

static const char* describe(int32_t code) {
  switch (code) {
    case VIZLE_OK:
      return "done";
    case VIZLE_INVALID_ARGUMENT:
      return "an argument is out of range, or the memory does not suffice";
    case VIZLE_IMAGE_IO_FAILED:
      return "the portrait could not be written";
    case VIZLE_IMAGE_TOO_SMALL:
      return "the picture is smaller than 20 by 20 pixels";
    case VIZLE_NO_FACE:
      return "no face found";
    case VIZLE_UNKNOWN_EXTENSION:
      return "the input's name does not end in bmp, jpg, jpe, jfif, jpeg or png";
    case VIZLE_CANNOT_OPEN_FILE:
      return "the input cannot be opened";
    case VIZLE_CANNOT_CREATE_FILE:
      return "the output cannot be created";
    case VIZLE_BAD_IMAGE_FILE:
      return "the input is damaged or not of the kind that its name tells";
    default:
      return "unexpected answer";
  }
}

/* A whole positive number, or 0. */
static int32_t parseSize(const char* text) {
  char* end;
  long value;
  errno = 0;
  value = strtol(text, &end, 10);
  return errno == 0 && *text != '\0' && *end == '\0' && value > 0 && value <= 65535 ? (int32_t)value : 0;
}

static int usage(void) {
  fprintf(stderr, "usage: cut_portrait INPUT OUTPUT WIDTH HEIGHT [SCALE]\n");
  return 2;
}

static int32_t cut(char** argv, int32_t width, int32_t height, float scale) {
  int32_t code = pcSetFaceScale(scale);
  if (code == VIZLE_OK) code = pcSetDetectionPerformance(PcPerformanceThorough);
  if (code == VIZLE_OK) code = pcPortraitCut(argv[1], argv[2], width, height);
  return code;
}

int main(int argc, char** argv) {
  int32_t width, height, code;
  float scale = 1.0F;

  if (argc != 5 && argc != 6) return usage();
  width = parseSize(argv[3]);
  height = parseSize(argv[4]);
  if (argc == 6) scale = (float)atof(argv[5]);
  if (width == 0 || height == 0 || !(scale > 0)) return usage();

  code = pcInitialize();
  if (code == VIZLE_OK) {
    code = cut(argv, width, height, scale);
    pcFinalize();
  }
  if (code != VIZLE_OK) {
    fprintf(stderr, "cut_portrait: %s: %s (code %d)\n", argv[1], describe(code), (int)code);
    return 1;
  }
  printf("%s: portrait of %d by %d pixels\n", argv[2], (int)width, (int)height);
  return 0;
}
