#include "world.h"

#include <fstream>
#include <iterator>

void TOutcome::Add(const void* data, std::size_t size) {
  const auto* const bytes = static_cast<const unsigned char*>(data);
  for (std::size_t i = 0; i < size; ++i) Hash = (Hash ^ bytes[i]) * 0x100000001b3u;
}

// `Reserved` is never written.
void TOutcome::Add(const TFacePosition& face) {
  for (const int32_t value : {face.xc, face.yc, face.w}) Add(value);
  Add(&face.angle, sizeof face.angle);
}

void TOutcome::AddImage(HImage image) {
  int32_t width = 0, height = 0, size = 0;
  Add(VIZL_GetImageWidth(image, &width));
  Add(VIZL_GetImageHeight(image, &height));
  Add(VIZL_GetImageBufferSize(image, &size, VIZL_IMAGE_COLOR32));
  std::vector<unsigned char> pixels(static_cast<std::size_t>(size));
  Add(VIZL_SaveImageToBuffer(image, pixels.data(), VIZL_IMAGE_COLOR32));
  for (const int32_t value : {width, height, size}) Add(value);
  Add(pixels.data(), pixels.size());
}

void TOutcome::AddImageAndFree(HImage image) {
  AddImage(image);
  Add(VIZL_FreeImage(image));
}

void TOutcome::AddFile(const std::string& path) {
  const std::vector<unsigned char> content = contentOf(path);
  Add(static_cast<std::int64_t>(content.size()));
  Add(content.data(), content.size());
}

std::vector<unsigned char> contentOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

HImage emptyImage() {
  HImage image = 0;
  VIZL_CreateEmptyImage(&image);
  return image;
}

TWorld makeWorld(const std::string& pngFile, const std::string& folder) {
  TWorld world = {};
  world.pngFile = pngFile;
  world.folder = folder;
  world.png = contentOf(pngFile);
  VIZL_LoadImageFromFile(&world.picture, pngFile.c_str());
  VIZL_LoadImageFromFileWithAlpha(&world.pictureWithAlpha, pngFile.c_str());
  const std::string jpegFile = folder + "/world.jpg";
  VIZL_SaveImageToFile(world.picture, jpegFile.c_str());
  world.jpeg = contentOf(jpegFile);

  std::vector<unsigned char> pixels;
  constexpr int kSide = 50;
  for (int i = 0; i < 4 * kSide * kSide; ++i) pixels.push_back(static_cast<unsigned char>(i * i >> 7));
  VIZL_LoadImageFromBuffer(&world.overlay, pixels.data(), kSide, kSide, 4 * kSide, VIZL_IMAGE_COLOR32);
  // Found on a handle of its own: detections on the shared one come from the threads, all at once.
  HImage own = 0;
  VIZL_LoadImageFromFile(&own, pngFile.c_str());
  VIZL_DetectFace(own, &world.face);
  VIZL_FreeImage(own);
  for (int i = 0; i < 40; ++i) {
    world.points[i] = {world.face.xc + (i % 8 - 4) * world.face.w / 10, world.face.yc + (i / 8 - 2) * world.face.w / 7};
  }
  return world;
}
