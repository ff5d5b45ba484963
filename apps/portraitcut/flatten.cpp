#include "flatten.h"

#include "failure.h"

namespace {

// Rounds half up, which is exact here: 255 is odd.
unsigned char mix(unsigned colour, unsigned ground, unsigned alpha) {
  return static_cast<unsigned char>((colour * alpha + ground * (255 - alpha) + 127) / 255);
}

}  // namespace

Picture flatten(const Picture& withAlpha, Colour ground) {
  int32_t bytes = 0;
  requireOk(VIZL_GetImageBufferSize(withAlpha.handle(), &bytes, VIZL_IMAGE_COLOR32), "asking for a size");
  std::vector<unsigned char> pixels(static_cast<size_t>(bytes));
  requireOk(VIZL_SaveImageToBuffer(withAlpha.handle(), pixels.data(), VIZL_IMAGE_COLOR32), "reading pixels");
  unsigned char* to = pixels.data();
  for (size_t at = 0; at < pixels.size(); at += 4) {
    const unsigned char* from = pixels.data() + at;
    const unsigned alpha = from[3];
    *to++ = mix(from[0], ground.red, alpha);
    *to++ = mix(from[1], ground.green, alpha);
    *to++ = mix(from[2], ground.blue, alpha);
  }
  return Picture::fromPixels(pixels, withAlpha.size());
}
