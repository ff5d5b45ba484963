// The portrait-cut functions: life cycle, forwards and cuts.
#include "api/exported.h"
#include "api/pc_api.h"
#include "api/pc_settings.h"

namespace {

bool usesFeatures(const PcFaceRecord& settings) { return settings.performance == PcPerformanceThorough; }

// Frees its image, if it has one, at the end of the scope.
struct TOwnedImage {
  HImage handle = 0;
  bool owned = false;
  ~TOwnedImage() {
    if (owned) VIZL_FreeImage(handle);
  }
};

int32_t load(TOwnedImage& image, const char* fileName) {
  const int32_t code = VIZL_LoadImageFromFile(&image.handle, fileName);
  // The handle of a failed load is left to its owner, who doesn't know it: it lives until pcFinalize.
  image.owned = code == VIZLE_OK;
  return code;
}

int32_t create(TOwnedImage& image) {
  const int32_t code = VIZL_CreateEmptyImage(&image.handle);
  image.owned = code == VIZLE_OK;
  return code;
}

int32_t cut(HImage source, HImage destination, int32_t width, int32_t height, ContextID context) {
  PcFaceRecord settings;
  const int32_t code = ReadPcSettings(context, settings);
  if (code != VIZLE_OK) return code;
  return VIZL_PortraitCut_C(source, width, height, static_cast<double>(settings.faceScale),
                            static_cast<double>(settings.shiftX), static_cast<double>(settings.shiftY),
                            usesFeatures(settings), destination, context);
}

// Where to store the corners of a frame.
struct TCorners {
  int32_t* x1;
  int32_t* y1;
  int32_t* x2;
  int32_t* y2;
};

int32_t findFrame(HImage image, int32_t width, int32_t height, const PcFaceRecord& settings, const TCorners& corners,
                  ContextID context) {
  return VIZL_GetFacePosition_C(image, width, height, static_cast<double>(settings.faceScale),
                                static_cast<double>(settings.shiftX), static_cast<double>(settings.shiftY),
                                usesFeatures(settings), corners.x1, corners.y1, corners.x2, corners.y2, context);
}

}  // namespace

int32_t pcInitialize() { return VIZL_Initialize(""); }

int32_t pcFinalize() { return VIZL_Finalize(); }

int32_t pcCreateContextID(int32_t* id) { return VIZL_CreateContext_ID(id); }

int32_t pcFreeContextID(int32_t id) { return VIZL_FreeContext_ID(id); }

int32_t pcSetDetectionThreshold(int32_t threshold) { return VIZL_SetFaceDetectionThreshold(threshold); }

int32_t pcSetDetectionThreshold_C(int32_t threshold, int32_t context) {
  return VIZL_SetFaceDetectionThreshold_C(threshold, context);
}

int32_t pcSetJpegQuality(int32_t quality) { return VIZL_SetJpegCompressionQuality(quality); }

int32_t pcSetJpegQuality_C(int32_t quality, int32_t context) {
  return VIZL_SetJpegCompressionQuality_C(quality, context);
}

int32_t pcPortraitCut(const char* inputFile, const char* outputFile, int32_t width, int32_t height) {
  return pcPortraitCut_C(inputFile, outputFile, width, height, 0);
}

int32_t pcPortraitCut_C(const char* inputFile, const char* outputFile, int32_t width, int32_t height, int32_t context) {
  return Exported([=] {
    TOwnedImage source, destination;
    int32_t code = load(source, inputFile);
    if (code == VIZLE_OK) code = create(destination);
    if (code == VIZLE_OK) code = cut(source.handle, destination.handle, width, height, context);
    if (code == VIZLE_OK) code = VIZL_SaveImageToFile_C(destination.handle, outputFile, context);
    return code;
  });
}

int32_t pcPortraitCut_HImageToHImage_C(HImage source, HImage destination, int32_t width, int32_t height,
                                       int32_t context) {
  return Exported([=] { return cut(source, destination, width, height, context); });
}

int32_t pcGetFacePosition(const char* inputFile, int32_t width, int32_t height, int32_t* x1, int32_t* y1, int32_t* x2,
                          int32_t* y2) {
  return pcGetFacePosition_C(inputFile, width, height, x1, y1, x2, y2, 0);
}

int32_t pcGetFacePosition_C(const char* inputFile, int32_t width, int32_t height, int32_t* x1, int32_t* y1, int32_t* x2,
                            int32_t* y2, int32_t context) {
  return Exported([=] {
    TOwnedImage image;
    PcFaceRecord settings;
    int32_t code = load(image, inputFile);
    if (code == VIZLE_OK) code = ReadPcSettings(context, settings);
    if (code != VIZLE_OK) return code;
    return findFrame(image.handle, width, height, settings, {x1, y1, x2, y2}, context);
  });
}

int32_t pcGetFacePositionInHImageAndFree_C(HImage image, int32_t width, int32_t height, int32_t* x1, int32_t* y1,
                                           int32_t* x2, int32_t* y2, int32_t context) {
  return Exported([=] {
    PcFaceRecord settings;
    int32_t code = ReadPcSettings(context, settings);
    if (code != VIZLE_OK) return code;  // and the handle stays open
    code = findFrame(image, width, height, settings, {x1, y1, x2, y2}, context);
    VIZL_FreeImage(image);
    return code;
  });
}
