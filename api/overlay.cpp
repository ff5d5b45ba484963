// An overlay on its background.
#include <climits>

#include "api/exported.h"
#include "api/handles.h"

namespace {

bool haveAlpha(const TIppiImage& a, const TIppiImage& b) { return a.Mode == imRGBA32 && b.Mode == imRGBA32; }

// Whether there is a covered area and its corners can be told; where they can't, the overlay lies far outside.
bool isNear(const TIppiImage& overlay, int32_t x, int32_t y) {
  if (overlay.Width < 1 || overlay.Height < 1) return false;
  return x <= INT_MAX - overlay.Width && y <= INT_MAX - overlay.Height;
}

void putAdjusted(TIppiImage& overlay, int32_t x, int32_t y, TIppiImage& back, TIppiImage& result) {
  result.Assign(back);
  if (!isNear(overlay, x, y)) return;
  TIppiImage covered, adjusted;
  back.CopyTo(covered, x, y, x + overlay.Width - 1, y + overlay.Height - 1);
  adjusted.Assign(overlay);
  adjusted.AdjustLevelsWithAlpha(covered);
  adjusted.PutOver(back, result, x, y);
}

}  // namespace

int32_t VIZL_PutImageAdjustColors(HImage image, int32_t x, int32_t y, HImage back, HImage result) {
  return Exported([=] {
    ippiImgStruct *overlay, *ground, *to;
    {
      TImagesLookup lookup;
      overlay = lookup.Find(image);
      ground = lookup.Find(back);
      to = lookup.Find(result);
    }
    if (overlay == nullptr || ground == nullptr || to == nullptr) return VIZLE_INVALID_ARGUMENT;
    if (!haveAlpha(*overlay->Image, *ground->Image)) return VIZLE_INVALID_ARGUMENT;
    ReplaceImage(*to, [&](TIppiImage& fresh) { putAdjusted(*overlay->Image, x, y, *ground->Image, fresh); });
    return VIZLE_OK;
  });
}
