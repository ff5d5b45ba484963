/* Draws what the library sees into a picture: each face as a green square that stands as the face does, its forty
 * points, from red for the least sure to blue for the surest, and the rectangle of the portrait in yellow.
 *
 *   annotate INPUT OUTPUT WIDTH HEIGHT [SCALE]
 *
 * WIDTH, HEIGHT and SCALE are those of the portrait, as for cut_portrait. */
#include <math.h>
#include <stdio.h>
#include <stdlib.h>
#include <vizl_api.h>

enum { kMaxFaces = 100 };

typedef struct Canvas {
  unsigned char* pixels; /* three bytes a pixel, top row first */
  int32_t width;
  int32_t height;
  int32_t pen; /* side of the pen in pixels */
} Canvas;

typedef struct Colour {
  unsigned char red, green, blue;
} Colour;

typedef struct Spot {
  double x, y;
} Spot;

static void dab(Canvas* canvas, Spot at, Colour colour) {
  const int32_t left = (int32_t)floor(at.x) - canvas->pen / 2;
  const int32_t top = (int32_t)floor(at.y) - canvas->pen / 2;
  int32_t x, y;
  for (y = top; y < top + canvas->pen; ++y) {
    for (x = left; x < left + canvas->pen; ++x) {
      unsigned char* pixel;
      if (x < 0 || y < 0 || x >= canvas->width || y >= canvas->height) continue;
      pixel = canvas->pixels + 3 * ((size_t)y * (size_t)canvas->width + (size_t)x);
      pixel[0] = colour.red;
      pixel[1] = colour.green;
      pixel[2] = colour.blue;
    }
  }
}

static void drawLine(Canvas* canvas, Spot from, Spot to, Colour colour) {
  const int steps = 1 + (int)ceil(fmax(fabs(to.x - from.x), fabs(to.y - from.y)));
  int k;
  for (k = 0; k <= steps; ++k) {
    const double t = (double)k / steps;
    const Spot at = {from.x + t * (to.x - from.x), from.y + t * (to.y - from.y)};
    dab(canvas, at, colour);
  }
}

static void drawFourSides(Canvas* canvas, const Spot corners[4], Colour colour) {
  int k;
  for (k = 0; k < 4; ++k) drawLine(canvas, corners[k], corners[(k + 1) % 4], colour);
}

/* The face leans the other way than the turn that sets it upright. */
static void drawFace(Canvas* canvas, const TFacePosition* face) {
  static const Colour green = {60, 220, 80};
  static const int signs[4][2] = {{-1, -1}, {1, -1}, {1, 1}, {-1, 1}};
  const double lean = -face->angle * 3.14159265358979 / 180.0;
  const double half = 0.5 * face->w;
  Spot corners[4];
  int k;
  for (k = 0; k < 4; ++k) {
    const double x = signs[k][0] * half;
    const double y = signs[k][1] * half;
    corners[k].x = face->xc + x * cos(lean) - y * sin(lean);
    corners[k].y = face->yc + x * sin(lean) + y * cos(lean);
  }
  drawFourSides(canvas, corners, green);
}

/* Red below kUnsure, blue above kSure, mixed between. */
static Colour colourOf(float confidence) {
  static const double kUnsure = 0.8, kSure = 1.25;
  const double t = fmin(fmax((confidence - kUnsure) / (kSure - kUnsure), 0.0), 1.0);
  Colour colour;
  colour.red = (unsigned char)(240 - 200 * t);
  colour.green = (unsigned char)(50 + 110 * t);
  colour.blue = (unsigned char)(40 + 210 * t);
  return colour;
}

static void drawPoints(Canvas* canvas, TPoint points[40], const float confidences[40]) {
  const int32_t pen = canvas->pen;
  int k;
  canvas->pen = 2 * pen;
  for (k = 0; k < 40; ++k) {
    const Spot at = {points[k].x, points[k].y};
    dab(canvas, at, colourOf(confidences[k]));
  }
  canvas->pen = pen;
}

static void drawFrame(Canvas* canvas, int32_t x1, int32_t y1, int32_t x2, int32_t y2) {
  static const Colour yellow = {250, 210, 40};
  const Spot corners[4] = {{x1, y1}, {x2, y1}, {x2, y2}, {x1, y2}};
  drawFourSides(canvas, corners, yellow);
}

/* The points are searched in the image, which is still as it was loaded. */
static int32_t drawFaces(Canvas* canvas, HImage image, const TFacePosition* faces, int32_t count) {
  TPoint points[40];
  float confidences[40];
  int32_t k;
  for (k = 0; k < count; ++k) {
    const int32_t code = VIZL_DetectFacialFeaturesInRegionEx(image, &faces[k], &points, &confidences);
    if (code != VIZLE_OK) return code;
    printf("face at (%d, %d), %d pixels wide, angle %.1f, eyes at (%d, %d) and (%d, %d)\n", (int)faces[k].xc,
           (int)faces[k].yc, (int)faces[k].w, faces[k].angle, (int)points[0].x, (int)points[0].y, (int)points[1].x,
           (int)points[1].y);
    drawFace(canvas, &faces[k]);
    drawPoints(canvas, points, confidences);
  }
  return VIZLE_OK;
}

static int32_t draw(Canvas* canvas, HImage image, int32_t width, int32_t height, double scale) {
  static TFacePosition faces[kMaxFaces];
  int32_t count, x1, y1, x2, y2;
  int32_t code = VIZL_DetectMultipleFaces(image, &count, faces, sizeof faces);
  if (code == VIZLE_OK) code = VIZL_GetFacePosition(image, width, height, scale, 0, 0, true, &x1, &y1, &x2, &y2);
  if (code == VIZLE_OK) code = drawFaces(canvas, image, faces, count);
  if (code == VIZLE_OK) drawFrame(canvas, x1, y1, x2, y2);
  return code;
}

/* Takes the pixels out of the image, draws, and puts them back. */
static int32_t annotate(HImage image, int32_t width, int32_t height, double scale) {
  Canvas canvas;
  int32_t size;
  int32_t code = VIZL_GetImageBufferSize(image, &size, VIZL_IMAGE_COLOR24);
  if (code != VIZLE_OK) return code;
  canvas.pixels = malloc((size_t)size);
  if (canvas.pixels == NULL) return VIZLE_INVALID_ARGUMENT;
  VIZL_GetImageWidth(image, &canvas.width);
  VIZL_GetImageHeight(image, &canvas.height);
  canvas.pen = 1 + (canvas.width + canvas.height) / 700;
  code = VIZL_SaveImageToBuffer(image, canvas.pixels, VIZL_IMAGE_COLOR24);
  if (code == VIZLE_OK) code = draw(&canvas, image, width, height, scale);
  if (code == VIZLE_OK) {
    code = VIZL_AssignImageFromBuffer(image, canvas.pixels, canvas.width, canvas.height, 3 * canvas.width,
                                      VIZL_IMAGE_COLOR24);
  }
  free(canvas.pixels);
  return code;
}

int main(int argc, char** argv) {
  HImage image;
  int32_t code;
  if (argc != 5 && argc != 6) {
    fprintf(stderr, "usage: annotate INPUT OUTPUT WIDTH HEIGHT [SCALE]\n");
    return 2;
  }
  code = VIZL_Initialize(NULL);
  if (code == VIZLE_OK) code = VIZL_LoadImageFromFile(&image, argv[1]);
  if (code == VIZLE_OK) code = annotate(image, atoi(argv[3]), atoi(argv[4]), argc == 6 ? atof(argv[5]) : 1.0);
  if (code == VIZLE_OK) code = VIZL_SaveImageToFile(image, argv[2]);
  VIZL_Finalize();
  if (code != VIZLE_OK) {
    fprintf(stderr, "annotate: %s: %s (code %d)\n", argv[1], code == VIZLE_NO_FACE ? "no face found" : "failed",
            (int)code);
    return 1;
  }
  return 0;
}
