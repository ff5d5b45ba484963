#include "world.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstring>

namespace {

constexpr HImage kHandles = 12;  // more than any call under test makes
constexpr ContextID kContexts = 4;

void require(int32_t code) { ASSERT_EQ(code, VIZLE_OK); }

template <class T>
void append(std::string& text, const T& value) {
  text.append(reinterpret_cast<const char*>(&value), sizeof value);
}

HImage newImage() {
  HImage image = 0;
  require(VIZL_CreateEmptyImage(&image));
  return image;
}

}  // namespace

TWorld::TWorld() {
  jpegFile = folder / "face.jpg";
  pngFile = folder / "face.png";
  bmpFile = folder / "face.bmp";
  jpegOutput = folder / "output.jpg";
  pngOutput = folder / "output.png";
  bmpOutput = folder / "output.bmp";
  require(VIZL_Initialize(nullptr));
  MakePictures();
  ContextID context = 0;
  require(VIZL_CreateContext_ID(&context));
  require(VIZL_SetFaceDetectionParameters_C(false, false, 100, kQuick));
  require(VIZL_SetFaceDetectionParameters(true, true, 100));
  face = {144, 190, 120, 0, 0.0};
  for (int i = 0; i < 40; ++i) points[i] = {100 + i % 8 * 12, 120 + i / 8 * 20};
}

TWorld::~TWorld() {
  VIZL_FreeContext_ID(kQuick);
  VIZL_SetFaceDetectionParameters(true, true, 384);
  VIZL_Finalize();
}

void TWorld::MakePictures() {
  HImage image;
  require(VIZL_LoadImageFromFile(&image, TEST_DATA "/average_face_1.jpg"));
  require(VIZL_ResizeImage(image, 0.5004, image));
  require(VIZL_SaveImageToFile(image, jpegFile.c_str()));
  require(VIZL_SaveImageToFile(image, pngFile.c_str()));
  require(VIZL_SaveImageToFile(image, bmpFile.c_str()));
  jpeg = readFile(jpegFile);
  png = readFile(pngFile);
  newImage();
  FillTarget();
  const HImage overlay = newImage(), ground = newImage();
  HImage alpha;
  require(VIZL_LoadImageFromFileWithAlpha(&alpha, TEST_DATA "/average_faces.png"));
  require(VIZL_CopyRect(alpha, 20, 20, 59, 49, overlay));
  require(VIZL_CopyRect(alpha, 90, 60, 149, 109, ground));
  require(VIZL_FreeImage(alpha));
}

void TWorld::FillTarget() {
  unsigned char pixels[60];
  for (unsigned char i = 0; i < sizeof pixels; ++i) pixels[i] = i;
  require(VIZL_AssignImageFromBuffer(kTarget, pixels, 5, 4, 15, VIZL_IMAGE_COLOR24));
}

void TWorld::Prepare() {
  require(VIZL_CopyImage(kFace, newImage()));
  ContextID context;
  require(VIZL_CreateContext_ID(&context));
  std::memset(static_cast<void*>(&out), 0, sizeof out);  // padding too
  out = TOutputs();
}

void TWorld::Restore() {
  for (HImage image = kFresh; image < kHandles; ++image) require(VIZL_FreeImage(image));
  for (ContextID context = kQuick + 1; context < kContexts; ++context) VIZL_FreeContext_ID(context);
  FillTarget();
  for (const std::string* file : {&jpegOutput, &pngOutput, &bmpOutput}) unlink(file->c_str());
}

std::vector<std::string> TWorld::Pictures() const {
  std::vector<std::string> pictures(kHandles);
  for (HImage image = 0; image < kHandles; ++image) {
    unsigned char* data = nullptr;
    int32_t width = 0, height = 0, scanLine = 0;
    VIZL_IMAGEMODE mode = 0;
    std::string& text = pictures[image];
    append(text, VIZL_GetImageData(image, &data, &width, &height, &scanLine, &mode));
    for (const int32_t value : {width, height, scanLine, mode}) append(text, value);
    const auto bytes = static_cast<std::size_t>(scanLine) * static_cast<std::size_t>(height);
    if (data != nullptr) text.append(reinterpret_cast<const char*>(data), bytes);
  }
  return pictures;
}

std::string TWorld::Outputs() const {
  std::string text;
  append(text, out);
  return text;
}

std::string TWorld::Files() const {
  std::string text;
  for (const std::string* file : {&jpegOutput, &pngOutput, &bmpOutput}) {
    const std::vector<unsigned char> bytes = readFile(*file);
    append(text, bytes.size());
    text.append(bytes.begin(), bytes.end());
  }
  return text;
}
