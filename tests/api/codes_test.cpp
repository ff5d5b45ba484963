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

TCall named(const char* name, std::function<int32_t()> call) { return {name, std::move(call)}; }

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

// A call by its name, on the arguments that stand around it.
#define CALL(function, ...) named(#function, [=] { return function(__VA_ARGS__); })

// Every exported function that answers a code, called with arguments that are good. First those that take no handle,
// or of which a bad one is no error.
std::vector<TCall> callsWithoutHandles(TOutputs* o) {
  const unsigned char* const data = o->buffer;
  return {
      CALL(VIZL_Finalize),
      CALL(VIZL_CreateEmptyImage, &o->handle),
      CALL(VIZL_FreeImage, kNoImage),
      CALL(VIZL_LoadImageFromFile, &o->handle, TEST_DATA "/average_faces.png"),
      CALL(VIZL_LoadImageFromFileWithAlpha, &o->handle, TEST_DATA "/average_faces.png"),
      CALL(VIZL_LoadImageFromJpegBuffer, &o->handle, data, 64),
      CALL(VIZL_LoadImageFromPngBuffer, &o->handle, data, 64),
      CALL(VIZL_LoadImageFromPngBufferWithAlpha, &o->handle, data, 64),
      CALL(VIZL_LoadImageFromBuffer, &o->handle, data, 2, 2, 8, 1),
      CALL(VIZL_CreateContext_ID, &o->context),
      CALL(VIZL_FreeContext_ID, 1),
      CALL(VIZL_SetContextUserField, 1, o),
      CALL(VIZL_GetContextUserField, 1, &o->field),
      CALL(VIZL_SetFaceDetectionParameters, true, true, 384),
      CALL(VIZL_SetFaceDetectionParameters_C, true, true, 384, 0),
      CALL(VIZL_SetFaceDetectionThreshold, 3),
      CALL(VIZL_SetFaceDetectionThreshold_C, 3, 0),
      CALL(VIZL_SetJpegCompressionQuality, 90),
      CALL(VIZL_SetJpegCompressionQuality_C, 90, 0),
      CALL(VIZL_GetDetectedFaceConfidence, &o->a),
      CALL(pcFinalize),
      CALL(pcCreateContextID, &o->context),
      CALL(pcFreeContextID, 1),
      CALL(pcSetDetectionThreshold, 3),
      CALL(pcSetDetectionThreshold_C, 3, 0),
      CALL(pcSetJpegQuality, 90),
      CALL(pcSetJpegQuality_C, 90, 0),
      CALL(pcSetFaceScale, 1),
      CALL(pcSetFaceScale_C, 1, 0),
      CALL(pcSetFaceShift, 0, 0),
      CALL(pcSetFaceShift_C, 0, 0, 0),
      CALL(pcSetDetectionPerformance, 1),
      CALL(pcSetDetectionPerformance_C, 1, 0),
      CALL(pcPortraitCut, TEST_DATA "/average_faces.png", TemporaryPath("codes.png").c_str(), 9, 9),
      CALL(pcPortraitCut_C, TEST_DATA "/average_faces.png", TemporaryPath("codes.png").c_str(), 9, 9, 0),
      CALL(pcGetFacePosition, TEST_DATA "/average_faces.png", 9, 9, &o->a, &o->b, &o->c, &o->d),
      CALL(pcGetFacePosition_C, TEST_DATA "/average_faces.png", 9, 9, &o->a, &o->b, &o->c, &o->d, 0),
  };
}

std::vector<TCall> callsOnHandles(TOutputs* o, HImage bad, HImage good) {
  const unsigned char* const data = o->buffer;
  return {
      CALL(VIZL_AssignImageFromBuffer, bad, data, 2, 2, 8, 1),
      CALL(VIZL_GetImageWidth, bad, &o->a),
      CALL(VIZL_GetImageHeight, bad, &o->a),
      CALL(VIZL_GetImageData, bad, &o->data, &o->a, &o->b, &o->c, &o->mode),
      CALL(VIZL_GetImageBufferSize, bad, &o->a, 1),
      CALL(VIZL_SaveImageToBuffer, bad, o->buffer, 1),
      CALL(VIZL_SaveImageToFile, bad, TemporaryPath("codes.png").c_str()),
      CALL(VIZL_SaveImageToFile_C, bad, TemporaryPath("codes.png").c_str(), 0),
      CALL(VIZL_CopyImage, bad, good),
      CALL(VIZL_CopyImage, good, bad),
      CALL(VIZL_ResizeImage, bad, 1, good),
      CALL(VIZL_ResizeImage, good, 1, bad),
      CALL(VIZL_RotateImage, bad, 1, good),
      CALL(VIZL_RotateImage, good, 1, bad),
      CALL(VIZL_RotateImageCenter, bad, 1, 1, 1, good),
      CALL(VIZL_RotateImageCenter, good, 1, 1, 1, bad),
      CALL(VIZL_CopyRect, bad, 0, 0, 1, 1, good),
      CALL(VIZL_CopyRect, good, 0, 0, 1, 1, bad),
      CALL(VIZL_PutImageAdjustColors, bad, 0, 0, good, good),
      CALL(VIZL_DetectFace, bad, o->faces),
      CALL(VIZL_DetectFace_C, bad, o->faces, 0),
      CALL(VIZL_DetectMultipleFaces, bad, &o->a, o->faces, 96),
      CALL(VIZL_DetectMultipleFaces, bad, &o->a, o->faces, 23),
      CALL(VIZL_DetectMultipleFaces_C, bad, &o->a, o->faces, 96, 0),
      CALL(VIZL_DetectFacialFeatures, bad, &o->points),
      CALL(VIZL_DetectFacialFeatures_C, bad, &o->points, 0),
      CALL(VIZL_DetectFacialFeaturesEx, bad, &o->points, &o->confidences),
      CALL(VIZL_DetectFacialFeaturesEx_C, bad, &o->points, &o->confidences, 0),
      CALL(VIZL_DetectFacialFeaturesInRegion, bad, o->faces, &o->points),
      CALL(VIZL_DetectFacialFeaturesInRegion_C, bad, o->faces, &o->points, 0),
      CALL(VIZL_DetectFacialFeaturesInRegionEx, bad, o->faces, &o->points, &o->confidences),
      CALL(VIZL_DetectFacialFeaturesInRegionEx_C, bad, o->faces, &o->points, &o->confidences, 0),
      CALL(VIZL_DetectEyesInRegion, bad, o->faces, &o->points),
      CALL(VIZL_DetectEyesInRegion_C, bad, o->faces, &o->points, 0),
      CALL(VIZL_GetFacePosition, bad, 10, 10, 1, 0, 0, false, &o->a, &o->b, &o->c, &o->d),
      CALL(VIZL_GetFacePosition_C, bad, 10, 10, 1, 0, 0, false, &o->a, &o->b, &o->c, &o->d, 0),
      CALL(VIZL_PortraitCut, bad, 10, 10, 1, 0, 0, false, good),
      CALL(VIZL_PortraitCut, good, 10, 10, 1, 0, 0, false, bad),
      CALL(VIZL_PortraitCut_C, bad, 10, 10, 1, 0, 0, false, good, 0),
      CALL(VIZL_ExtractFaceImage, bad, &o->points, 9, 9, &o->handle, &o->otherPoints),
      CALL(pcPortraitCut_HImageToHImage_C, bad, good, 9, 9, 0),
      CALL(pcPortraitCut_HImageToHImage_C, good, bad, 9, 9, 0),
      CALL(pcGetFacePositionInHImageAndFree_C, bad, 9, 9, &o->a, &o->b, &o->c, &o->d, 0),
  };
}

std::vector<TCall> everyCall(TOutputs* o) {
  std::vector<TCall> calls = callsWithoutHandles(o);
  for (const TCall& call : callsOnHandles(o, 0, 0)) calls.push_back(call);
  return calls;
}

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
  for (const TCall& call : everyCall(&outputs)) called.insert(call.name);
  EXPECT_EQ(called, exportedFunctions());
}

TEST(ExportedCodes, EveryFunctionRefusesToWorkWithoutTheLibrary) {
  TOutputs outputs;
  for (int round = 0; round < 2; ++round) {
    for (const TCall& call : everyCall(&outputs)) {
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
    for (const TCall& call : callsOnHandles(&outputs, bad, good)) {
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
  writeFile(file, {});
  const char* name = file.c_str();
  const unsigned char byte = 0;
  int32_t a, b, c;
  unsigned char* data;
  VIZL_IMAGEMODE mode;
  TFacePosition face = {};
  TPoint points[40];
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
      {"eyes, face", [&] { return VIZL_DetectEyesInRegion(image, nullptr, &points); }},
      {"eyes, points", [&] { return VIZL_DetectEyesInRegion(image, &face, nullptr); }},
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
