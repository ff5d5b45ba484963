#include "calls.h"

namespace {

using TCodes = std::vector<int32_t>;

const TCodes kPlain = {VIZLE_INVALID_ARGUMENT};
const TCodes kLoadFile = {VIZLE_INVALID_ARGUMENT, VIZLE_CANNOT_OPEN_FILE, VIZLE_BAD_IMAGE_FILE};
const TCodes kLoadBuffer = {VIZLE_INVALID_ARGUMENT, VIZLE_IMAGE_IO_FAILED};
const TCodes kSaveFile = {VIZLE_CANNOT_CREATE_FILE, VIZLE_IMAGE_IO_FAILED};
const TCodes kFileToFile = {VIZLE_INVALID_ARGUMENT, VIZLE_CANNOT_OPEN_FILE, VIZLE_BAD_IMAGE_FILE,
                            VIZLE_CANNOT_CREATE_FILE, VIZLE_IMAGE_IO_FAILED};

constexpr HImage kFace = TWorld::kFace, kTarget = TWorld::kTarget, kOverlay = TWorld::kOverlay,
                 kGround = TWorld::kGround, kFresh = TWorld::kFresh;
constexpr ContextID kQuick = TWorld::kQuick;
constexpr int32_t kFaceBytes = sizeof(TOutputs::faces);

unsigned sizeOf(const std::vector<unsigned char>& bytes) { return static_cast<unsigned>(bytes.size()); }

int32_t loadRaw(TWorld& w, VIZL_IMAGEMODE mode) {
  return VIZL_LoadImageFromBuffer(&w.out.handle, w.png.data(), 20, 15, 80, mode);
}

const std::vector<TCall> kFileCalls = {
    {"LoadJpegFile", kLoadFile, [](TWorld& w) { return VIZL_LoadImageFromFile(&w.out.handle, w.jpegFile.c_str()); },
     true},
    {"LoadPngFile", kLoadFile, [](TWorld& w) { return VIZL_LoadImageFromFile(&w.out.handle, w.pngFile.c_str()); },
     true},
    {"LoadBmpFile", kLoadFile, [](TWorld& w) { return VIZL_LoadImageFromFile(&w.out.handle, w.bmpFile.c_str()); },
     true},
    {"LoadJpegFileWithAlpha", kLoadFile,
     [](TWorld& w) { return VIZL_LoadImageFromFileWithAlpha(&w.out.handle, w.jpegFile.c_str()); }, true},
    {"LoadJpegBuffer", kLoadBuffer,
     [](TWorld& w) { return VIZL_LoadImageFromJpegBuffer(&w.out.handle, w.jpeg.data(), sizeOf(w.jpeg)); }, true},
    {"LoadPngBuffer", kLoadBuffer,
     [](TWorld& w) { return VIZL_LoadImageFromPngBuffer(&w.out.handle, w.png.data(), sizeOf(w.png)); }, true},
    {"LoadPngBufferWithAlpha", kLoadBuffer,
     [](TWorld& w) { return VIZL_LoadImageFromPngBufferWithAlpha(&w.out.handle, w.png.data(), sizeOf(w.png)); }, true},
    {"SaveJpeg", kSaveFile, [](TWorld& w) { return VIZL_SaveImageToFile(kFace, w.jpegOutput.c_str()); }},
    {"SaveJpegWithAlpha", kSaveFile,
     [](TWorld& w) { return VIZL_SaveImageToFile_C(kGround, w.jpegOutput.c_str(), kQuick); }},
    {"SavePng", kSaveFile, [](TWorld& w) { return VIZL_SaveImageToFile(kFace, w.pngOutput.c_str()); }},
    {"SaveBmp", kSaveFile, [](TWorld& w) { return VIZL_SaveImageToFile(kFace, w.bmpOutput.c_str()); }},
    {"PcPortraitCut", kFileToFile,
     [](TWorld& w) { return pcPortraitCut_C(w.jpegFile.c_str(), w.pngOutput.c_str(), 30, 40, kQuick); }},
    {"PcGetFacePosition", kLoadFile,
     [](TWorld& w) {
       int32_t* const c = w.out.corners;
       return pcGetFacePosition_C(w.pngFile.c_str(), 30, 40, c, c + 1, c + 2, c + 3, kQuick);
     }},
};

const std::vector<TCall> kPictureCalls = {
    {"CreateEmptyImage", kPlain, [](TWorld& w) { return VIZL_CreateEmptyImage(&w.out.handle); }},
    {"LoadGrayPixels", kPlain, [](TWorld& w) { return loadRaw(w, VIZL_IMAGE_GRAY8); }, true},
    {"LoadAlphaPixels", kPlain, [](TWorld& w) { return loadRaw(w, VIZL_IMAGE_COLOR32); }, true},
    {"AssignPixels", kPlain,
     [](TWorld& w) { return VIZL_AssignImageFromBuffer(kTarget, w.png.data(), 20, 15, 60, VIZL_IMAGE_COLOR24); }},
    {"CopyImage", kPlain, [](TWorld&) { return VIZL_CopyImage(kFace, kTarget); }},
    {"Shrink", kPlain, [](TWorld&) { return VIZL_ResizeImage(kFace, 0.3, kTarget); }},
    {"Enlarge", kPlain, [](TWorld&) { return VIZL_ResizeImage(kGround, 2.5, kTarget); }},
    {"Rotate", kPlain, [](TWorld&) { return VIZL_RotateImage(kFace, 10, kTarget); }},
    {"RotateInPlace", kPlain, [](TWorld&) { return VIZL_RotateImageCenter(kTarget, 10, 2, 2, kTarget); }},
    {"CopyRect", kPlain, [](TWorld&) { return VIZL_CopyRect(kFace, -5, 10, 30, 70, kTarget); }},
    {"PutImageAdjustColors", kPlain,
     [](TWorld&) { return VIZL_PutImageAdjustColors(kOverlay, 10, 40, kGround, kTarget); }},
    {"CreateContext", kPlain, [](TWorld& w) { return VIZL_CreateContext_ID(&w.out.context); }},
    {"SetFaceScaleOfContext", kPlain, [](TWorld&) { return pcSetFaceScale_C(1.5F, TWorld::kFreshContext); }},
};

const std::vector<TCall> kFaceCalls = {
    {"DetectFace", kPlain, [](TWorld& w) { return VIZL_DetectFace_C(kFresh, w.out.faces, kQuick); }},
    {"DetectTiltedFace", kPlain, [](TWorld& w) { return VIZL_DetectFace(kFresh, w.out.faces); }},
    {"DetectMultipleFaces", kPlain,
     [](TWorld& w) { return VIZL_DetectMultipleFaces(kFresh, &w.out.count, w.out.faces, kFaceBytes); }},
    {"DetectFacialFeatures", kPlain,
     [](TWorld& w) { return VIZL_DetectFacialFeaturesEx_C(kFresh, &w.out.points, &w.out.confidences, kQuick); }},
    {"DetectFacialFeaturesInRegion", kPlain,
     [](TWorld& w) { return VIZL_DetectFacialFeaturesInRegion(kFresh, &w.face, &w.out.points); }},
    {"DetectEyesInRegion", kPlain, [](TWorld& w) { return VIZL_DetectEyesInRegion(kFresh, &w.face, &w.out.points); }},
    {"GetFacePositionByEyes", kPlain,
     [](TWorld& w) {
       int32_t* const c = w.out.corners;
       return VIZL_GetFacePosition_C(kFresh, 30, 40, 1, 0, 0, true, c, c + 1, c + 2, c + 3, kQuick);
     }},
    {"PortraitCutByEyes", kPlain,
     [](TWorld&) { return VIZL_PortraitCut_C(kFresh, 30, 40, 0.7, 0.1, 0, true, kTarget, kQuick); }},
    {"PortraitCutInPlace", kPlain,
     [](TWorld&) { return VIZL_PortraitCut_C(kFresh, 300, 400, 1, 0, 0, false, kFresh, kQuick); }},
    {"ExtractFaceImage", kPlain,
     [](TWorld& w) { return VIZL_ExtractFaceImage(kFace, &w.points, 64, 64, &w.out.handle, &w.out.points); }},
    {"PcGetFacePositionInHImageAndFree", kPlain,
     [](TWorld& w) {
       int32_t* const c = w.out.corners;
       return pcGetFacePositionInHImageAndFree_C(kFresh, 30, 40, c, c + 1, c + 2, c + 3, kQuick);
     },
     false, true},
};

}  // namespace

std::vector<TCall> CallsUnderTest() {
  std::vector<TCall> calls = kFileCalls;
  calls.insert(calls.end(), kPictureCalls.begin(), kPictureCalls.end());
  calls.insert(calls.end(), kFaceCalls.begin(), kFaceCalls.end());
  return calls;
}
