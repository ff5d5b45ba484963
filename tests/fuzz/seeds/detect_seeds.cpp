// A face as small as detection can see, for every kind of call of the target; the bytes before it are its choices.
#include "api/vizl_api.h"
#include "tests/fuzz/seeds/seeds.h"

namespace {

constexpr int kSide = 64;

// The middle square of a sample picture, gray.
Bytes facePixels() {
  HImage image = 0;
  std::int32_t width = 0, height = 0;
  Bytes pixels(kSide * kSide);
  VIZL_Initialize(nullptr);
  VIZL_LoadImageFromFile(&image, TEST_DATA "/average_face_1.jpg");
  VIZL_GetImageWidth(image, &width);
  VIZL_GetImageHeight(image, &height);
  const int side = width < height ? width : height, x = (width - side) / 2, y = (height - side) / 2;
  VIZL_CopyRect(image, x, y, x + side - 1, y + side - 1, image);
  VIZL_ResizeImage(image, (kSide + 0.4) / side, image);
  VIZL_SaveImageToBuffer(image, pixels.data(), VIZL_IMAGE_GRAY8);
  VIZL_Finalize();
  return pixels;
}

}  // namespace

Seeds detectSeeds() {
  Seeds seeds = choiceSeeds("detect");
  const Bytes face = facePixels();
  for (std::uint8_t what = 0; what < 8; ++what) {
    // Tilted faces too, angles, a working width of 96, threshold 3, a context that exists, then the picture's size.
    Bytes bytes = {1, 1, 1, 97, 1, 3, 1, what, kSide - 1, kSide - 1, 0};
    bytes.insert(bytes.end(), face.begin(), face.end());
    // A face in the middle, upright; the last byte asks for a full search where there is one.
    const Bytes behind = {72, 72, 40, 0, 1, 1};
    bytes.insert(bytes.end(), behind.begin(), behind.end());
    seeds.push_back({"face_" + std::to_string(what), bytes});
  }
  return seeds;
}
