// The codes that do not depend on what a function does: before the start, for bad handles and for null pointers.
#include <algorithm>
#include <fstream>
#include <functional>
#include <limits>
#include <set>
#include <string>
#include <vector>

#include "library_fixture.h"

namespace {

constexpr HImage kNoImage = 9999;

struct TCall {
  const char* name;
  std::function<int32_t()> call;
};

// Places for outputs, sized for whatever a function could write.
struct TOutputs {
  HImage handle = 77;
  int32_t a = 77, b = 77, c = 77, d = 77;
  ContextID context = 77;
  void* field = this;
  unsigned char* data = nullptr;
  VIZL_IMAGEMODE mode = 77;
  TFacePosition faces[4] = {};
  TPoint points[40] = {};
  TPoint otherPoints[40] = {};
  float confidences[40] = {};
  unsigned char buffer[64] = {};
};

// Every exported function that answers a code, called with arguments that are good but for the handles.
std::vector<TCall> everyCall(TOutputs& o, HImage bad, HImage good) {
  const unsigned char* const data = o.buffer;
  return {
      {"VIZL_Finalize", [] { return VIZL_Finalize(); }},
      {"VIZL_CreateEmptyImage", [&] { return VIZL_CreateEmptyImage(&o.handle); }},
      {"VIZL_FreeImage", [=] { return VIZL_FreeImage(bad); }},
      {"VIZL_LoadImageFromFile", [&] { return VIZL_LoadImageFromFile(&o.handle, TEST_DATA "/average_faces.png"); }},
      {"VIZL_LoadImageFromFileWithAlpha",
       [&] { return VIZL_LoadImageFromFileWithAlpha(&o.handle, TEST_DATA "/average_faces.png"); }},
      {"VIZL_LoadImageFromJpegBuffer", [&o, data] { return VIZL_LoadImageFromJpegBuffer(&o.handle, data, 64); }},
      {"VIZL_LoadImageFromPngBuffer", [&o, data] { return VIZL_LoadImageFromPngBuffer(&o.handle, data, 64); }},
      {"VIZL_LoadImageFromPngBufferWithAlpha",
       [&o, data] { return VIZL_LoadImageFromPngBufferWithAlpha(&o.handle, data, 64); }},
      {"VIZL_LoadImageFromBuffer", [&o, data] { return VIZL_LoadImageFromBuffer(&o.handle, data, 2, 2, 8, 1); }},
      {"VIZL_AssignImageFromBuffer", [=] { return VIZL_AssignImageFromBuffer(bad, data, 2, 2, 8, 1); }},
      {"VIZL_GetImageWidth", [&o, bad] { return VIZL_GetImageWidth(bad, &o.a); }},
      {"VIZL_GetImageHeight", [&o, bad] { return VIZL_GetImageHeight(bad, &o.a); }},
      {"VIZL_GetImageData", [&o, bad] { return VIZL_GetImageData(bad, &o.data, &o.a, &o.b, &o.c, &o.mode); }},
      {"VIZL_GetImageBufferSize", [&o, bad] { return VIZL_GetImageBufferSize(bad, &o.a, 1); }},
      {"VIZL_SaveImageToBuffer", [&o, bad] { return VIZL_SaveImageToBuffer(bad, o.buffer, 1); }},
      {"VIZL_SaveImageToFile", [=] { return VIZL_SaveImageToFile(bad, TemporaryPath("codes.png").c_str()); }},
      {"VIZL_SaveImageToFile_C", [=] { return VIZL_SaveImageToFile_C(bad, TemporaryPath("codes.png").c_str(), 0); }},
      {"VIZL_CopyImage", [=] { return VIZL_CopyImage(bad, good); }},
      {"VIZL_CopyImage", [=] { return VIZL_CopyImage(good, bad); }},
      {"VIZL_ResizeImage", [=] { return VIZL_ResizeImage(bad, 1, good); }},
      {"VIZL_ResizeImage", [=] { return VIZL_ResizeImage(good, 1, bad); }},
      {"VIZL_RotateImage", [=] { return VIZL_RotateImage(bad, 1, good); }},
      {"VIZL_RotateImage", [=] { return VIZL_RotateImage(good, 1, bad); }},
      {"VIZL_RotateImageCenter", [=] { return VIZL_RotateImageCenter(bad, 1, 1, 1, good); }},
      {"VIZL_RotateImageCenter", [=] { return VIZL_RotateImageCenter(good, 1, 1, 1, bad); }},
      {"VIZL_CopyRect", [=] { return VIZL_CopyRect(bad, 0, 0, 1, 1, good); }},
      {"VIZL_CopyRect", [=] { return VIZL_CopyRect(good, 0, 0, 1, 1, bad); }},
      {"VIZL_PutImageAdjustColors", [=] { return VIZL_PutImageAdjustColors(bad, 0, 0, good, good); }},
      {"VIZL_CreateContext_ID", [&] { return VIZL_CreateContext_ID(&o.context); }},
      {"VIZL_FreeContext_ID", [] { return VIZL_FreeContext_ID(1); }},
      {"VIZL_SetContextUserField", [&] { return VIZL_SetContextUserField(1, &o); }},
      {"VIZL_GetContextUserField", [&] { return VIZL_GetContextUserField(1, &o.field); }},
      {"VIZL_SetFaceDetectionParameters", [] { return VIZL_SetFaceDetectionParameters(true, true, 384); }},
      {"VIZL_SetFaceDetectionParameters_C", [] { return VIZL_SetFaceDetectionParameters_C(true, true, 384, 0); }},
      {"VIZL_SetFaceDetectionThreshold", [] { return VIZL_SetFaceDetectionThreshold(3); }},
      {"VIZL_SetFaceDetectionThreshold_C", [] { return VIZL_SetFaceDetectionThreshold_C(3, 0); }},
      {"VIZL_SetJpegCompressionQuality", [] { return VIZL_SetJpegCompressionQuality(90); }},
      {"VIZL_SetJpegCompressionQuality_C", [] { return VIZL_SetJpegCompressionQuality_C(90, 0); }},
      {"VIZL_GetDetectedFaceConfidence", [&] { return VIZL_GetDetectedFaceConfidence(&o.a); }},
      {"VIZL_DetectFace", [&o, bad] { return VIZL_DetectFace(bad, o.faces); }},
      {"VIZL_DetectFace_C", [&o, bad] { return VIZL_DetectFace_C(bad, o.faces, 0); }},
      {"VIZL_DetectMultipleFaces", [&o, bad] { return VIZL_DetectMultipleFaces(bad, &o.a, o.faces, 96); }},
      {"VIZL_DetectMultipleFaces", [&o, bad] { return VIZL_DetectMultipleFaces(bad, &o.a, o.faces, 23); }},
      {"VIZL_DetectMultipleFaces_C", [&o, bad] { return VIZL_DetectMultipleFaces_C(bad, &o.a, o.faces, 96, 0); }},
      {"VIZL_DetectFacialFeatures", [&o, bad] { return VIZL_DetectFacialFeatures(bad, &o.points); }},
      {"VIZL_DetectFacialFeatures_C", [&o, bad] { return VIZL_DetectFacialFeatures_C(bad, &o.points, 0); }},
      {"VIZL_DetectFacialFeaturesEx",
       [&o, bad] { return VIZL_DetectFacialFeaturesEx(bad, &o.points, &o.confidences); }},
      {"VIZL_DetectFacialFeaturesEx_C",
       [&o, bad] { return VIZL_DetectFacialFeaturesEx_C(bad, &o.points, &o.confidences, 0); }},
      {"VIZL_DetectFacialFeaturesInRegion",
       [&o, bad] { return VIZL_DetectFacialFeaturesInRegion(bad, o.faces, &o.points); }},
      {"VIZL_DetectFacialFeaturesInRegion_C",
       [&o, bad] { return VIZL_DetectFacialFeaturesInRegion_C(bad, o.faces, &o.points, 0); }},
      {"VIZL_DetectFacialFeaturesInRegionEx",
       [&o, bad] { return VIZL_DetectFacialFeaturesInRegionEx(bad, o.faces, &o.points, &o.confidences); }},
      {"VIZL_DetectFacialFeaturesInRegionEx_C",
       [&o, bad] { return VIZL_DetectFacialFeaturesInRegionEx_C(bad, o.faces, &o.points, &o.confidences, 0); }},
      {"VIZL_DetectEyesInRegion", [&o, bad] { return VIZL_DetectEyesInRegion(bad, o.faces, &o.points); }},
      {"VIZL_DetectEyesInRegion_C", [&o, bad] { return VIZL_DetectEyesInRegion_C(bad, o.faces, &o.points, 0); }},
      {"VIZL_GetFacePosition",
       [&o, bad] { return VIZL_GetFacePosition(bad, 10, 10, 1, 0, 0, false, &o.a, &o.b, &o.c, &o.d); }},
      {"VIZL_GetFacePosition_C",
       [&o, bad] { return VIZL_GetFacePosition_C(bad, 10, 10, 1, 0, 0, false, &o.a, &o.b, &o.c, &o.d, 0); }},
      {"VIZL_PortraitCut", [=] { return VIZL_PortraitCut(bad, 10, 10, 1, 0, 0, false, good); }},
      {"VIZL_PortraitCut", [=] { return VIZL_PortraitCut(good, 10, 10, 1, 0, 0, false, bad); }},
      {"VIZL_PortraitCut_C", [=] { return VIZL_PortraitCut_C(bad, 10, 10, 1, 0, 0, false, good, 0); }},
      {"VIZL_ExtractFaceImage",
       [&o, bad] { return VIZL_ExtractFaceImage(bad, &o.points, 9, 9, &o.handle, &o.otherPoints); }},
      {"pcFinalize", [] { return pcFinalize(); }},
      {"pcCreateContextID", [&] { return pcCreateContextID(&o.context); }},
      {"pcFreeContextID", [] { return pcFreeContextID(1); }},
      {"pcSetDetectionThreshold", [] { return pcSetDetectionThreshold(3); }},
      {"pcSetDetectionThreshold_C", [] { return pcSetDetectionThreshold_C(3, 0); }},
      {"pcSetJpegQuality", [] { return pcSetJpegQuality(90); }},
      {"pcSetJpegQuality_C", [] { return pcSetJpegQuality_C(90, 0); }},
      {"pcSetFaceScale", [] { return pcSetFaceScale(1); }},
      {"pcSetFaceScale_C", [] { return pcSetFaceScale_C(1, 0); }},
      {"pcSetFaceShift", [] { return pcSetFaceShift(0, 0); }},
      {"pcSetFaceShift_C", [] { return pcSetFaceShift_C(0, 0, 0); }},
      {"pcSetDetectionPerformance", [] { return pcSetDetectionPerformance(1); }},
      {"pcSetDetectionPerformance_C", [] { return pcSetDetectionPerformance_C(1, 0); }},
      {"pcPortraitCut",
       [] { return pcPortraitCut(TEST_DATA "/average_faces.png", TemporaryPath("codes.png").c_str(), 9, 9); }},
      {"pcPortraitCut_C",
       [] { return pcPortraitCut_C(TEST_DATA "/average_faces.png", TemporaryPath("codes.png").c_str(), 9, 9, 0); }},
      {"pcPortraitCut_HImageToHImage_C", [=] { return pcPortraitCut_HImageToHImage_C(bad, good, 9, 9, 0); }},
      {"pcPortraitCut_HImageToHImage_C", [=] { return pcPortraitCut_HImageToHImage_C(good, bad, 9, 9, 0); }},
      {"pcGetFacePosition",
       [&o] { return pcGetFacePosition(TEST_DATA "/average_faces.png", 9, 9, &o.a, &o.b, &o.c, &o.d); }},
      {"pcGetFacePosition_C",
       [&o] { return pcGetFacePosition_C(TEST_DATA "/average_faces.png", 9, 9, &o.a, &o.b, &o.c, &o.d, 0); }},
      {"pcGetFacePositionInHImageAndFree_C",
       [&o, bad] { return pcGetFacePositionInHImageAndFree_C(bad, 9, 9, &o.a, &o.b, &o.c, &o.d, 0); }},
  };
}

// Functions whose bad handle, if they take one at all, is no error.
const std::set<std::string> kTakeNoHandle = {"VIZL_Finalize",
                                             "VIZL_CreateEmptyImage",
                                             "VIZL_FreeImage",
                                             "VIZL_LoadImageFromFile",
                                             "VIZL_LoadImageFromFileWithAlpha",
                                             "VIZL_LoadImageFromJpegBuffer",
                                             "VIZL_LoadImageFromPngBuffer",
                                             "VIZL_LoadImageFromPngBufferWithAlpha",
                                             "VIZL_LoadImageFromBuffer",
                                             "VIZL_CreateContext_ID",
                                             "VIZL_FreeContext_ID",
                                             "VIZL_SetContextUserField",
                                             "VIZL_GetContextUserField",
                                             "VIZL_SetFaceDetectionParameters",
                                             "VIZL_SetFaceDetectionParameters_C",
                                             "VIZL_SetFaceDetectionThreshold",
                                             "VIZL_SetFaceDetectionThreshold_C",
                                             "VIZL_SetJpegCompressionQuality",
                                             "VIZL_SetJpegCompressionQuality_C",
                                             "VIZL_GetDetectedFaceConfidence",
                                             "pcFinalize",
                                             "pcCreateContextID",
                                             "pcFreeContextID",
                                             "pcSetDetectionThreshold",
                                             "pcSetDetectionThreshold_C",
                                             "pcSetJpegQuality",
                                             "pcSetJpegQuality_C",
                                             "pcSetFaceScale",
                                             "pcSetFaceScale_C",
                                             "pcSetFaceShift",
                                             "pcSetFaceShift_C",
                                             "pcSetDetectionPerformance",
                                             "pcSetDetectionPerformance_C",
                                             "pcPortraitCut",
                                             "pcPortraitCut_C",
                                             "pcGetFacePosition",
                                             "pcGetFacePosition_C"};

// The exported functions, without the few that answer no code or start the library.
std::set<std::string> exportedFunctions() {
  const std::set<std::string> others = {"VIZL_Initialize", "pcInitialize", "VIZL_GetVersion", "VIZL_resInit",
                                        "VIZL_resData",    "VIZL_resType", "VIZL_resu1",      "VIZL_resu2",
                                        "VIZL_resu3",      "VIZL_resu4"};
  std::set<std::string> names;
  std::ifstream file(EXPORTED_NAMES);
  for (std::string word; file >> word;) {
    word = word.substr(0, word.find(';'));
    if ((word.starts_with("VIZL_") || word.starts_with("pc")) && !others.contains(word)) names.insert(word);
  }
  return names;
}

TEST(ExportedCodes, TheTableOfCallsIsComplete) {
  TOutputs outputs;
  std::set<std::string> called;
  for (const TCall& call : everyCall(outputs, 0, 0)) called.insert(call.name);
  EXPECT_EQ(called, exportedFunctions());
}

TEST(ExportedCodes, EveryFunctionRefusesToWorkWithoutTheLibrary) {
  TOutputs outputs;
  for (int round = 0; round < 2; ++round) {
    for (const TCall& call : everyCall(outputs, 0, 0)) {
      EXPECT_EQ(call.call(), VIZLE_INVALID_ARGUMENT) << call.name << (round == 0 ? " before" : " after");
    }
    if (round == 0) {
      ASSERT_EQ(VIZL_Initialize(""), VIZLE_OK);
      ASSERT_EQ(VIZL_Finalize(), VIZLE_OK);
    }
  }
  EXPECT_EQ(outputs.handle, 77u);
  EXPECT_EQ(outputs.a, 77);
  EXPECT_EQ(outputs.context, 77);
}

using ExportedCodesTest = LibraryTest;

TEST_F(ExportedCodesTest, BadHandlesAreRefusedAndWriteNothing) {
  const HImage good = ImageOf(RandomPicture(30, 30, 3));
  const HImage freed = EmptyImage();
  ASSERT_EQ(VIZL_FreeImage(freed), VIZLE_OK);
  for (const HImage bad : {freed, kNoImage, std::numeric_limits<HImage>::max()}) {
    TOutputs outputs;
    for (const TCall& call : everyCall(outputs, bad, good)) {
      if (kTakeNoHandle.contains(call.name)) continue;
      EXPECT_EQ(call.call(), VIZLE_INVALID_ARGUMENT) << call.name << " on handle " << bad;
    }
    EXPECT_EQ(outputs.a, 77);
    EXPECT_EQ(outputs.mode, 77);
    EXPECT_EQ(outputs.handle, 77u);
    EXPECT_EQ(outputs.faces[0].w, 0);
  }
  EXPECT_TRUE(PictureOf(good, 3) == RandomPicture(30, 30, 3));
}

TEST_F(ExportedCodesTest, NullPointersAreRefused) {
  const HImage image = ImageOf(RandomPicture(30, 30, 3));
  const std::string file = TemporaryPath("null.png");
  WriteFile(file, {});
  const char* name = file.c_str();
  const unsigned char byte = 0;
  int32_t a, b, c;
  unsigned char* data;
  VIZL_IMAGEMODE mode;
  TFacePosition face;
  HImage handle = 77;
  const TCall calls[] = {
      {"create", [] { return VIZL_CreateEmptyImage(nullptr); }},
      {"load, name", [&] { return VIZL_LoadImageFromFile(&handle, nullptr); }},
      {"load, handle", [=] { return VIZL_LoadImageFromFile(nullptr, name); }},
      {"load alpha, name", [&] { return VIZL_LoadImageFromFileWithAlpha(&handle, nullptr); }},
      {"load alpha, handle", [=] { return VIZL_LoadImageFromFileWithAlpha(nullptr, name); }},
      {"JPEG, data", [&] { return VIZL_LoadImageFromJpegBuffer(&handle, nullptr, 1); }},
      {"JPEG, handle", [&] { return VIZL_LoadImageFromJpegBuffer(nullptr, &byte, 1); }},
      {"PNG, data", [&] { return VIZL_LoadImageFromPngBuffer(&handle, nullptr, 1); }},
      {"PNG, handle", [&] { return VIZL_LoadImageFromPngBuffer(nullptr, &byte, 1); }},
      {"PNG alpha, data", [&] { return VIZL_LoadImageFromPngBufferWithAlpha(&handle, nullptr, 1); }},
      {"PNG alpha, handle", [&] { return VIZL_LoadImageFromPngBufferWithAlpha(nullptr, &byte, 1); }},
      {"raw, buffer", [&] { return VIZL_LoadImageFromBuffer(&handle, nullptr, 1, 1, 3, 1); }},
      {"raw, handle", [&] { return VIZL_LoadImageFromBuffer(nullptr, &byte, 1, 1, 1, 0); }},
      {"assign", [=] { return VIZL_AssignImageFromBuffer(image, nullptr, 1, 1, 1, 0); }},
      {"width", [=] { return VIZL_GetImageWidth(image, nullptr); }},
      {"height", [=] { return VIZL_GetImageHeight(image, nullptr); }},
      {"data, data", [&] { return VIZL_GetImageData(image, nullptr, &a, &b, &c, &mode); }},
      {"data, width", [&] { return VIZL_GetImageData(image, &data, nullptr, &b, &c, &mode); }},
      {"data, height", [&] { return VIZL_GetImageData(image, &data, &a, nullptr, &c, &mode); }},
      {"data, line", [&] { return VIZL_GetImageData(image, &data, &a, &b, nullptr, &mode); }},
      {"data, mode", [&] { return VIZL_GetImageData(image, &data, &a, &b, &c, nullptr); }},
      {"size", [=] { return VIZL_GetImageBufferSize(image, nullptr, 1); }},
      {"save to buffer", [=] { return VIZL_SaveImageToBuffer(image, nullptr, 1); }},
      {"save", [=] { return VIZL_SaveImageToFile(image, nullptr); }},
      {"create context", [] { return VIZL_CreateContext_ID(nullptr); }},
      {"confidence", [] { return VIZL_GetDetectedFaceConfidence(nullptr); }},
      {"detect", [=] { return VIZL_DetectFace(image, nullptr); }},
      {"detect all, count", [&] { return VIZL_DetectMultipleFaces(image, nullptr, &face, 24); }},
      {"detect all, faces", [&] { return VIZL_DetectMultipleFaces(image, &a, nullptr, 24); }},
      {"detect all, before the size", [&] { return VIZL_DetectMultipleFaces(image, &a, nullptr, 23); }},
      {"frame, x1", [&] { return VIZL_GetFacePosition(image, 9, 9, 1, 0, 0, false, nullptr, &a, &b, &c); }},
      {"frame, y1", [&] { return VIZL_GetFacePosition(image, 9, 9, 1, 0, 0, false, &a, nullptr, &b, &c); }},
      {"frame, x2", [&] { return VIZL_GetFacePosition(image, 9, 9, 1, 0, 0, false, &a, &b, nullptr, &c); }},
      {"frame, y2", [&] { return VIZL_GetFacePosition(image, 9, 9, 1, 0, 0, false, &a, &b, &c, nullptr); }},
      {"cut, input", [=] { return pcPortraitCut(nullptr, name, 9, 9); }},
      {"position, input", [&] { return pcGetFacePosition(nullptr, 9, 9, &a, &b, &c, &a); }},
  };
  for (const TCall& call : calls) EXPECT_EQ(call.call(), VIZLE_INVALID_ARGUMENT) << call.name;
  EXPECT_EQ(handle, 77u);
  EXPECT_EQ(EmptyImage(), image + 1) << "a refused call must not leave a handle behind";
}

}  // namespace
