// The steps that are recorded: together they reach every arithmetic of the library that a caller can see.
#include <algorithm>

#include "record.h"

namespace {

HImage emptyImage() {
  HImage image;
  require(VIZL_CreateEmptyImage(&image), "VIZL_CreateEmptyImage");
  return image;
}

HImage resized(HImage source, double ratio) {
  const HImage image = emptyImage();
  require(VIZL_ResizeImage(source, ratio, image), "VIZL_ResizeImage");
  return image;
}

HImage rotated(HImage source, double angle) {
  const HImage image = emptyImage();
  require(VIZL_RotateImage(source, angle, image), "VIZL_RotateImage");
  return image;
}

void recordFace(TRecord& record, const std::string& name, HImage image, const TFacePosition& face) {
  record.AddFace(name, face);
  TPoint points[40] = {};
  require(VIZL_DetectEyesInRegion(image, &face, &points), "VIZL_DetectEyesInRegion");
  record.AddPoints(name + " eyes", points, 2);
  float confidences[40] = {};
  require(VIZL_DetectFacialFeaturesInRegionEx(image, &face, &points, &confidences),
          "VIZL_DetectFacialFeaturesInRegionEx");
  record.AddPoints(name + " points", points, 40);
  record.AddConfidences(name + " confidences", confidences);
  HImage extracted;
  require(VIZL_ExtractFaceImage(image, &points, 96, 96, &extracted, &points), "VIZL_ExtractFaceImage");
  record.AddPoints(name + " extracted points", points, 40);
  record.AddImageAndFree(name + " extracted", extracted);
}

void recordFaces(TRecord& record, const std::string& name, HImage image, int withPoints) {
  constexpr int kRoom = 32;
  TFacePosition faces[kRoom] = {};
  int32_t count;
  require(VIZL_DetectMultipleFaces(image, &count, faces, sizeof faces), "VIZL_DetectMultipleFaces");
  record.Add(name, std::to_string(count) + " faces");
  for (int i = 0; i < count; ++i) {
    const std::string face = name + " face " + std::to_string(i);
    if (i < withPoints) {
      recordFace(record, face, image, faces[i]);
    } else {
      record.AddFace(face, faces[i]);
    }
  }
  int32_t confidence;
  require(VIZL_DetectFace(image, &faces[0]), "VIZL_DetectFace");
  require(VIZL_GetDetectedFaceConfidence(&confidence), "VIZL_GetDetectedFaceConfidence");
  record.AddFace(name + " strongest", faces[0]);
  record.Add(name + " strongest confidence", std::to_string(confidence));
}

void recordPortraits(TRecord& record, HImage image) {
  for (const bool byEyes : {false, true}) {
    const std::string name = byEyes ? "portrait by the eyes" : "portrait by the face";
    int32_t x1, y1, x2, y2;
    require(VIZL_GetFacePosition(image, 240, 320, 0.8, 0.05, -0.1, byEyes, &x1, &y1, &x2, &y2), "VIZL_GetFacePosition");
    record.Add(name + " frame",
               std::to_string(x1) + " " + std::to_string(y1) + " " + std::to_string(x2) + " " + std::to_string(y2));
    for (const int width : {60, 240, 900}) {
      const HImage portrait = emptyImage();
      require(VIZL_PortraitCut(image, width, width * 4 / 3, 0.8, 0.05, -0.1, byEyes, portrait), "VIZL_PortraitCut");
      record.AddImageAndFree(name + ", width " + std::to_string(width), portrait);
    }
  }
}

void recordGeometry(TRecord& record, HImage image) {
  for (const double ratio : {0.13, 0.5, 0.77, 1.0, 1.6}) {
    record.AddImageAndFree("resized by " + std::to_string(ratio), resized(image, ratio));
  }
  for (const double angle : {-31.0, 0.4, 15.0, 90.0}) {
    record.AddImageAndFree("turned by " + std::to_string(angle), rotated(image, angle));
  }
}

// A disc with a soft edge, in colours that run across it, put where it hangs over an edge too.
void recordOverlay(TRecord& record, HImage background) {
  constexpr int kSide = 120;
  std::vector<unsigned char> pixels;
  for (int y = 0; y < kSide; ++y) {
    for (int x = 0; x < kSide; ++x) {
      const int dx = 2 * x - kSide, dy = 2 * y - kSide;
      const int alpha = std::clamp((kSide * kSide - dx * dx - dy * dy) / 20, 0, 255);
      for (const int value : {2 * x, 2 * y, 255 - x - y, alpha}) pixels.push_back(static_cast<unsigned char>(value));
    }
  }
  HImage overlay;
  require(VIZL_LoadImageFromBuffer(&overlay, pixels.data(), kSide, kSide, 4 * kSide, VIZL_IMAGE_COLOR32),
          "VIZL_LoadImageFromBuffer");
  for (const int place : {-40, 55}) {
    const HImage result = emptyImage();
    require(VIZL_PutImageAdjustColors(overlay, place, place, background, result), "VIZL_PutImageAdjustColors");
    record.AddImageAndFree("overlay at " + std::to_string(place), result);
  }
  require(VIZL_FreeImage(overlay), "VIZL_FreeImage");
}

}  // namespace

TRecord recordOf(const std::string& pngFile) {
  TRecord record;
  HImage image, withAlpha;
  require(VIZL_LoadImageFromFile(&image, pngFile.c_str()), "VIZL_LoadImageFromFile");
  require(VIZL_LoadImageFromFileWithAlpha(&withAlpha, pngFile.c_str()), "VIZL_LoadImageFromFileWithAlpha");
  recordFaces(record, "picture", image, 8);
  recordPortraits(record, image);
  const HImage turned = rotated(image, 11);
  recordFaces(record, "turned picture", turned, 1);
  const HImage small = resized(image, 0.6);
  recordFaces(record, "small picture", small, 1);
  recordGeometry(record, withAlpha);
  recordOverlay(record, withAlpha);
  record.AddImageAndFree("picture", image);
  for (const HImage each : {withAlpha, turned, small}) require(VIZL_FreeImage(each), "VIZL_FreeImage");
  return record;
}
