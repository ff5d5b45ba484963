#include "features/crop_face_adjust_features.h"

#include <cstdint>

#include "api/vizl_api.h"
#include "image/TIppiImage.h"
#include "image/to_int.h"

namespace {

struct TSquare {
  int left;
  int top;
  int side;  // from the first to the last pixel, so one less than their number
};

// False if the square reaches beyond int or is larger than an image can be.
bool squareAround(const TFacePosition& face, TSquare& square) {
  const double corners[] = {face.xc - 0.55 * face.w, face.yc - 0.4 * face.w, face.xc + 0.55 * face.w,
                            face.yc + 0.7 * face.w};
  for (double corner : corners) {
    if (corner != ClampToInt(corner)) return false;
  }
  const int left = static_cast<int>(corners[0]);
  const int top = static_cast<int>(corners[1]);
  const int64_t width = static_cast<int64_t>(static_cast<int>(corners[2])) - left;
  const int64_t height = static_cast<int64_t>(static_cast<int>(corners[3])) - top;
  const int64_t side = width > height ? height : width;
  if (side < 0 || side >= kMaxImageSide) return false;
  square = {left, top, static_cast<int>(side)};
  return true;
}

int moved(int coordinate, int origin, float scale) {
  const int64_t offset = static_cast<int64_t>(coordinate) - origin;
  return TruncateToInt(static_cast<double>(static_cast<float>(offset) * scale));
}

}  // namespace

int CropFace(TIppiImage* image, TFacePosition face, int size, TIppiImage* crop, float* scale, int* left, int* top) {
  TSquare square;
  if (face.w < 0 || size < 1 || size > kMaxImageSide || !squareAround(face, square)) return VIZLE_INVALID_ARGUMENT;

  TIppiImage cut(imGray8), scaled(imGray8);
  image->CopyTo(cut, square.left, square.top, square.left + square.side, square.top + square.side);
  // 0.4 keeps the floored side from falling one pixel short.
  const float s = static_cast<float>((size + 0.4) / cut.Width);
  cut.Resize(scaled, static_cast<double>(s));
  crop->Swap(scaled);
  *left = square.left;
  *top = square.top;
  *scale = s;
  return VIZLE_OK;
}

int CropFaceAdjustFeatures(TIppiImage* image, TFacePosition face, int size, TPoint* features, int featureCount,
                           float* scale, int* left, int* top) {
  const int code = CropFace(image, face, size, image, scale, left, top);
  if (code != VIZLE_OK) return code;
  for (int i = 0; features != nullptr && i < featureCount; ++i) {
    features[i] = {moved(features[i].x, *left, *scale), moved(features[i].y, *top, *scale)};
  }
  return VIZLE_OK;
}
