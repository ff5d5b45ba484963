#include "eyes/detect_eyes.h"

#include <algorithm>

#include "api/vizl_api.h"
#include "eyes/eye_window.h"
#include "eyes/find_eye.h"
#include "features/crop_face_adjust_features.h"
#include "image/TIppiImage.h"

namespace {

// A coordinate of the image, limited to it before it becomes an int: faces may lie far outside.
int inside(float coordinate, int size) {
  return static_cast<int>(std::clamp(coordinate, 0.0f, static_cast<float>(size - 1)));
}

}  // namespace

int DetectEyesInRegion(TIppiImage* image, const TFacePosition* face, TPoint* points) {
  if (image->Width < 1 || image->Height < 1) return VIZLE_INVALID_ARGUMENT;
  TIppiImage work(imGray8);
  float scale;
  int left, top;
  if (CropFace(image, *face, kEyeFrameSide, &work, &scale, &left, &top) != VIZLE_OK) return VIZLE_INVALID_ARGUMENT;
  int ax, ay, bx, by;
  FindRightEye(&work, &ax, &ay, false);
  FindRightEye(&work, &bx, &by, true);

  const auto x0 = static_cast<float>(left), y0 = static_cast<float>(top);
  const int mirrored = kEyeFrameSide - 1 - bx;
  points[0] = {inside(static_cast<float>(ax) / scale + x0, image->Width),
               inside(static_cast<float>(ay) / scale + y0, image->Height)};
  points[1] = {inside(x0 + static_cast<float>(mirrored) / scale, image->Width),
               inside(y0 + static_cast<float>(by) / scale, image->Height)};
  return VIZLE_OK;
}
