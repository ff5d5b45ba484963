// Operations from one handle into another.
#include <cmath>

#include "api/exported.h"
#include "api/handles.h"

namespace {

// `operate` takes the source's image and the one to make.
template <typename TOperate>
int32_t transform(HImage source, HImage dest, TOperate operate) {
  return Exported([&] {
    ippiImgStruct* from;
    ippiImgStruct* to;
    {
      TImagesLookup lookup;
      from = lookup.Find(source);
      to = lookup.Find(dest);
    }
    if (from == nullptr || to == nullptr) return VIZLE_INVALID_ARGUMENT;
    ReplaceImage(*to, [&](TIppiImage& fresh) { operate(*from->Image, fresh); });
    return VIZLE_OK;
  });
}

}  // namespace

int32_t VIZL_CopyImage(HImage source, HImage dest) {
  return transform(source, dest, [](TIppiImage& from, TIppiImage& to) { to.Assign(from); });
}

int32_t VIZL_ResizeImage(HImage source, double ratio, HImage dest) {
  if (!std::isfinite(ratio)) return VIZLE_INVALID_ARGUMENT;
  return transform(source, dest, [=](TIppiImage& from, TIppiImage& to) { from.Resize(to, ratio); });
}

int32_t VIZL_RotateImage(HImage source, double angle, HImage dest) {
  if (!std::isfinite(angle)) return VIZLE_INVALID_ARGUMENT;
  return transform(source, dest, [=](TIppiImage& from, TIppiImage& to) { from.Rotate(to, angle); });
}

int32_t VIZL_RotateImageCenter(HImage source, double angle, double xCenter, double yCenter, HImage dest) {
  if (!std::isfinite(angle) || !std::isfinite(xCenter) || !std::isfinite(yCenter)) return VIZLE_INVALID_ARGUMENT;
  return transform(source, dest,
                   [=](TIppiImage& from, TIppiImage& to) { from.RotateCenter(to, angle, xCenter, yCenter); });
}

int32_t VIZL_CopyRect(HImage source, int32_t x1, int32_t y1, int32_t x2, int32_t y2, HImage dest) {
  return transform(source, dest, [=](TIppiImage& from, TIppiImage& to) { from.CopyTo(to, x1, y1, x2, y2); });
}
