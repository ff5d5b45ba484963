// One job a family of functions.
#include <cstdlib>
#include <cstring>

#include "world.h"

namespace {

void load(const TWorld& world, int, TOutcome& outcome) {
  HImage image = 0;
  outcome.Add(VIZL_LoadImageFromFile(&image, world.pngFile.c_str()));
  outcome.AddImageAndFree(image);
  outcome.Add(VIZL_LoadImageFromFileWithAlpha(&image, world.pngFile.c_str()));
  outcome.AddImageAndFree(image);
  const auto pngSize = static_cast<unsigned>(world.png.size());
  outcome.Add(VIZL_LoadImageFromPngBuffer(&image, world.png.data(), pngSize));
  outcome.AddImageAndFree(image);
  outcome.Add(VIZL_LoadImageFromPngBufferWithAlpha(&image, world.png.data(), pngSize));
  outcome.AddImageAndFree(image);
  outcome.Add(VIZL_LoadImageFromJpegBuffer(&image, world.jpeg.data(), static_cast<unsigned>(world.jpeg.size())));
  outcome.AddImageAndFree(image);
  outcome.Add(VIZL_LoadImageFromJpegBuffer(&image, world.png.data(), pngSize));
  outcome.Add(VIZL_FreeImage(image));
}

// Raw pixels: many short lives of handles, between lookups of a shared one.
void handles(const TWorld& world, int thread, TOutcome& outcome) {
  for (int round = 0; round < 20; ++round) {
    unsigned char pixels[4 * 6 * 3];
    for (std::size_t i = 0; i < sizeof pixels; ++i) pixels[i] = static_cast<unsigned char>(static_cast<int>(i) * round);
    HImage image = 0;
    outcome.Add(VIZL_LoadImageFromBuffer(&image, pixels, 6, 4, 18, VIZL_IMAGE_COLOR24));
    outcome.AddImage(image);
    outcome.Add(VIZL_AssignImageFromBuffer(image, pixels + round % 5, 4, 4, 6, VIZL_IMAGE_GRAY8));
    unsigned char* data = nullptr;
    int32_t width = 0, height = 0, scanLine = 0;
    VIZL_IMAGEMODE mode = 0;
    outcome.Add(VIZL_GetImageData(image, &data, &width, &height, &scanLine, &mode));
    if (data != nullptr) outcome.Add(data, 3u * static_cast<unsigned>(width));
    for (const int32_t value : {width, height, scanLine, mode}) outcome.Add(value);
    outcome.Add(VIZL_GetImageWidth(world.picture, &width));
    outcome.Add(width);
    outcome.Add(VIZL_FreeImage(image));
    outcome.Add(VIZL_FreeImage(1000000u + static_cast<unsigned>(thread)));
    outcome.Add(VIZL_GetImageHeight(1000000, &height));
  }
}

void save(const TWorld& world, int thread, TOutcome& outcome) {
  ContextID context = 0;
  outcome.Add(VIZL_CreateContext_ID(&context));
  outcome.Add(VIZL_SetJpegCompressionQuality_C(60, context));
  for (const char* const ending : {"bmp", "png", "jpg"}) {
    const std::string path = world.Path(thread, ending);
    outcome.Add(VIZL_SaveImageToFile(world.picture, path.c_str()));
    outcome.AddFile(path);
    outcome.Add(VIZL_SaveImageToFile_C(world.overlay, path.c_str(), context));
    outcome.AddFile(path);
  }
  outcome.Add(VIZL_FreeContext_ID(context));
}

void geometry(const TWorld& world, int, TOutcome& outcome) {
  const HImage image = emptyImage();
  outcome.Add(VIZL_CopyImage(world.pictureWithAlpha, image));
  outcome.Add(VIZL_ResizeImage(image, 0.4, image));
  outcome.AddImage(image);
  outcome.Add(VIZL_ResizeImage(image, 1.3, image));
  outcome.Add(VIZL_RotateImage(image, 17, image));
  outcome.Add(VIZL_RotateImageCenter(image, -50, 20, 30, image));
  outcome.AddImage(image);
  outcome.Add(VIZL_CopyRect(world.picture, -9, 20, 120, 100, image));
  outcome.AddImageAndFree(image);
}

void overlay(const TWorld& world, int, TOutcome& outcome) {
  const HImage image = emptyImage();
  outcome.Add(VIZL_PutImageAdjustColors(world.overlay, 30, -7, world.pictureWithAlpha, image));
  outcome.AddImageAndFree(image);
}

// The process-wide values as they are: storing them anew changes no result.
void settings(const TWorld&, int, TOutcome& outcome) {
  outcome.Add(pcSetDetectionPerformance(PcPerformanceFast));
  outcome.Add(VIZL_SetFaceDetectionParameters(false, false, 100));
  outcome.Add(VIZL_SetFaceDetectionThreshold(3));
  outcome.Add(pcSetDetectionThreshold(3));
  outcome.Add(VIZL_SetJpegCompressionQuality(90));
  outcome.Add(pcSetJpegQuality(90));
  outcome.Add(pcSetFaceScale(1));
  outcome.Add(pcSetFaceShift(0, 0));
  VIZL_resInit();
  outcome.Add(VIZL_resData("CDATA"), 160);
  outcome.Add(VIZL_resType("MW"), std::strlen("unknown 4096"));
  outcome.Add(*VIZL_GetVersion());
  int32_t confidence = -1;  // of the last detection of any thread
  outcome.Add(VIZL_GetDetectedFaceConfidence(&confidence));
  outcome.Add(confidence >= 0);
}

void detect(const TWorld& world, int, TOutcome& outcome) {
  HImage fresh = 0;
  outcome.Add(VIZL_LoadImageFromPngBuffer(&fresh, world.png.data(), static_cast<unsigned>(world.png.size())));
  for (const HImage image : {world.picture, fresh}) {
    TFacePosition faces[12] = {};
    int32_t count = 0;
    outcome.Add(VIZL_DetectFace(image, &faces[0]));
    outcome.Add(faces[0]);
    outcome.Add(VIZL_DetectMultipleFaces(image, &count, faces, sizeof faces));
    for (int i = 0; i < count; ++i) outcome.Add(faces[i]);
  }
  outcome.Add(VIZL_FreeImage(fresh));
}

void frame(const TWorld& world, int, TOutcome& outcome) {
  int32_t corners[4] = {};
  outcome.Add(VIZL_GetFacePosition(world.picture, 30, 40, 0.9, 0, 0, false, &corners[0], &corners[1], &corners[2],
                                   &corners[3]));
  outcome.Add(corners, sizeof corners);
  const HImage portrait = emptyImage();
  outcome.Add(VIZL_PortraitCut(world.picture, 60, 80, 0.9, 0, 0, false, portrait));
  outcome.AddImageAndFree(portrait);
}

void contexts(const TWorld& world, int thread, TOutcome& outcome) {
  ContextID context = 0;
  outcome.Add(VIZL_CreateContext_ID(&context));
  outcome.Add(VIZL_SetFaceDetectionParameters_C(true, true, 100, context));
  outcome.Add(VIZL_SetFaceDetectionThreshold_C(2, context));
  void* const own = std::malloc(8);
  void* stored = nullptr;
  outcome.Add(VIZL_SetContextUserField(context, own));
  outcome.Add(VIZL_GetContextUserField(context, &stored));
  outcome.Add(stored == own);
  TFacePosition faces[12] = {};
  int32_t count = 0, corners[4] = {};
  outcome.Add(VIZL_DetectFace_C(world.picture, &faces[0], context));
  outcome.Add(faces[0]);
  outcome.Add(VIZL_DetectMultipleFaces_C(world.picture, &count, faces, sizeof faces, context));
  for (int i = 0; i < count; ++i) outcome.Add(faces[i]);
  outcome.Add(VIZL_GetFacePosition_C(world.picture, 30, 40, 0.9, 0, 0, false, &corners[0], &corners[1], &corners[2],
                                     &corners[3], context));
  outcome.Add(corners, sizeof corners);
  const HImage portrait = emptyImage();
  outcome.Add(VIZL_PortraitCut_C(world.picture, 30, 40, 0.9, 0, 0, false, portrait, context));
  outcome.AddImageAndFree(portrait);
  outcome.Add(VIZL_FreeContext_ID(context));
  outcome.Add(VIZL_SetFaceDetectionThreshold_C(2, 1000000 + thread));
}

void eyes(const TWorld& world, int, TOutcome& outcome) {
  TPoint points[40] = {};
  outcome.Add(VIZL_DetectEyesInRegion(world.picture, &world.face, &points));
  outcome.Add(points);
  outcome.Add(VIZL_DetectEyesInRegion_C(world.picture, &world.face, &points, 0));
  outcome.Add(points);
}

void extract(const TWorld& world, int, TOutcome& outcome) {
  TPoint points[40];
  std::memcpy(points, world.points, sizeof points);
  HImage image = 0;
  outcome.Add(VIZL_ExtractFaceImage(world.picture, &points, 70, 70, &image, &points));
  outcome.Add(points);
  outcome.AddImageAndFree(image);
}

void files(const TWorld& world, int thread, TOutcome& outcome) {
  const std::string path = world.Path(thread, "jpg");
  int32_t corners[4] = {};
  outcome.Add(pcPortraitCut(world.pngFile.c_str(), path.c_str(), 60, 80));
  outcome.AddFile(path);
  outcome.Add(pcGetFacePosition(world.pngFile.c_str(), 60, 80, &corners[0], &corners[1], &corners[2], &corners[3]));
  outcome.Add(corners, sizeof corners);
}

// With the settings of a context at this performance, which at the thorough level searches the points.
void filesWithContext(const TWorld& world, int thread, TOutcome& outcome, PcDetectionPerformance performance) {
  const std::string path = world.Path(thread, "png");
  int32_t context = 0, corners[4] = {};
  outcome.Add(pcCreateContextID(&context));
  outcome.Add(pcSetDetectionPerformance_C(performance, context));
  outcome.Add(pcSetDetectionThreshold_C(2, context));
  outcome.Add(pcSetJpegQuality_C(50, context));
  outcome.Add(pcSetFaceScale_C(0.8f, context));
  outcome.Add(pcSetFaceShift_C(0.1f, 0, context));
  outcome.Add(pcPortraitCut_C(world.pngFile.c_str(), path.c_str(), 60, 80, context));
  outcome.AddFile(path);
  outcome.Add(
      pcGetFacePosition_C(world.pngFile.c_str(), 60, 80, &corners[0], &corners[1], &corners[2], &corners[3], context));
  const HImage image = emptyImage();
  outcome.Add(pcPortraitCut_HImageToHImage_C(world.picture, image, 60, 80, context));
  outcome.AddImage(image);
  outcome.Add(
      pcGetFacePositionInHImageAndFree_C(image, 20, 20, &corners[0], &corners[1], &corners[2], &corners[3], context));
  outcome.Add(corners, sizeof corners);
  outcome.Add(pcFreeContextID(context));
}

void filesFast(const TWorld& world, int thread, TOutcome& outcome) {
  filesWithContext(world, thread, outcome, PcPerformanceFast);
}

void filesThorough(const TWorld& world, int thread, TOutcome& outcome) {
  filesWithContext(world, thread, outcome, PcPerformanceThorough);
}

void searchPicture(const TWorld& world, int, TOutcome& outcome) {
  TPoint points[40] = {};
  float confidences[40] = {};
  outcome.Add(VIZL_DetectFacialFeatures(world.picture, &points));
  outcome.Add(points);
  outcome.Add(VIZL_DetectFacialFeatures_C(world.picture, &points, 0));
  outcome.Add(points);
  outcome.Add(VIZL_DetectFacialFeaturesEx(world.picture, &points, &confidences));
  outcome.Add(points);
  outcome.Add(confidences);
  outcome.Add(VIZL_DetectFacialFeaturesEx_C(world.picture, &points, &confidences, 0));
  outcome.Add(confidences);
}

void searchFace(const TWorld& world, int, TOutcome& outcome) {
  TPoint points[40] = {};
  float confidences[40] = {};
  outcome.Add(VIZL_DetectFacialFeaturesInRegion(world.picture, &world.face, &points));
  outcome.Add(points);
  outcome.Add(VIZL_DetectFacialFeaturesInRegion_C(world.picture, &world.face, &points, 0));
  outcome.Add(points);
  outcome.Add(VIZL_DetectFacialFeaturesInRegionEx(world.picture, &world.face, &points, &confidences));
  outcome.Add(confidences);
  outcome.Add(VIZL_DetectFacialFeaturesInRegionEx_C(world.picture, &world.face, &points, &confidences, 0));
  outcome.Add(confidences);
}

}  // namespace

const std::vector<TJob> kJobs = {
    {"load", false, load},
    {"handles", false, handles},
    {"save", false, save},
    {"geometry", false, geometry},
    {"overlay", false, overlay},
    {"settings", false, settings},
    {"detect", false, detect},
    {"frame", false, frame},
    {"contexts", false, contexts},
    {"eyes", false, eyes},
    {"extract", false, extract},
    {"files", false, files},
    {"files, fast", false, filesFast},
    {"files, thorough", true, filesThorough},
    {"points of a picture", true, searchPicture},
    {"points of a face", true, searchFace},
};
