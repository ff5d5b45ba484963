// The portrait of the largest face: where it lies, and its cut. And the picture of a face whose points are known.
#include <algorithm>
#include <iterator>
#include <stdexcept>

#include "api/exported.h"
#include "api/handles.h"
#include "features/facial_features.h"
#include "framing/extract_face.h"
#include "framing/portrait_frame.h"

namespace {

// As many faces as any picture is expected to hold; 12 KiB of the caller's stack.
constexpr int kMaxFaces = 512;

int32_t imageSize(HImage image, int32_t& width, int32_t& height) {
  const int32_t code = VIZL_GetImageWidth(image, &width);
  return code == VIZLE_OK ? VIZL_GetImageHeight(image, &height) : code;
}

// The face to frame. One whose points can't be searched, as beyond the reach of the search, stays as detected. But a
// lack of memory goes on to the caller: the frame is not to depend on it.
TFacePosition withFeatures(HImage image, const TFacePosition& face, ContextID context) {
  TPoint points[40];
  try {
    TIppiImage* copy = DetectionCopyOf(*FindImage(image));
    const int code = DetectFacialFeaturesInRegion(copy, &face, &points, nullptr, context);
    return code == VIZLE_OK ? FaceByEyes(face, points[0], points[1]) : face;
  } catch (const std::length_error&) {
    return face;
  }
}

// `image` is valid and `wish` is not yet checked.
int32_t findFrame(HImage image, const TPortraitWish& wish, bool useFeatures, TPortraitFrame& frame, ContextID context) {
  if (!wish.valid()) return VIZLE_INVALID_ARGUMENT;
  TFacePosition faces[kMaxFaces];
  int32_t count, width, height;
  int32_t code = VIZL_DetectMultipleFaces_C(image, &count, faces, sizeof(faces), context);
  if (code != VIZLE_OK) return code;
  TFacePosition face = LargestFace(faces, count);
  if (useFeatures) face = withFeatures(image, face, context);
  code = imageSize(image, width, height);
  if (code != VIZLE_OK) return code;
  return CalculatePortraitFrame(face, width, height, wish, frame) ? VIZLE_OK : VIZLE_INVALID_ARGUMENT;
}

// The records of the two handles; false if either is not valid.
bool findPair(HImage image, HImage destination, ippiImgStruct*& from, ippiImgStruct*& to) {
  TImagesLookup lookup;
  from = lookup.Find(image);
  to = lookup.Find(destination);
  return from != nullptr && to != nullptr;
}

}  // namespace

int32_t VIZL_GetFacePosition(HImage image, int32_t width, int32_t height, double faceScale, double shiftX,
                             double shiftY, bool useFeatures, int32_t* x1, int32_t* y1, int32_t* x2, int32_t* y2) {
  return VIZL_GetFacePosition_C(image, width, height, faceScale, shiftX, shiftY, useFeatures, x1, y1, x2, y2, 0);
}

int32_t VIZL_GetFacePosition_C(HImage image, int32_t width, int32_t height, double faceScale, double shiftX,
                               double shiftY, bool useFeatures, int32_t* x1, int32_t* y1, int32_t* x2, int32_t* y2,
                               ContextID context) {
  return Exported([=] {
    if (FindImage(image) == nullptr || x1 == nullptr || y1 == nullptr || x2 == nullptr || y2 == nullptr) {
      return VIZLE_INVALID_ARGUMENT;
    }
    TPortraitFrame frame;
    const int32_t code = findFrame(image, {width, height, faceScale, shiftX, shiftY}, useFeatures, frame, context);
    if (code != VIZLE_OK) return code;
    *x1 = frame.x1;
    *y1 = frame.y1;
    *x2 = frame.x2;
    *y2 = frame.y2;
    return VIZLE_OK;
  });
}

int32_t VIZL_PortraitCut(HImage image, int32_t width, int32_t height, double faceScale, double shiftX, double shiftY,
                         bool useFeatures, HImage destination) {
  return VIZL_PortraitCut_C(image, width, height, faceScale, shiftX, shiftY, useFeatures, destination, 0);
}

int32_t VIZL_PortraitCut_C(HImage image, int32_t width, int32_t height, double faceScale, double shiftX, double shiftY,
                           bool useFeatures, HImage destination, ContextID context) {
  return Exported([=] {
    ippiImgStruct* from;
    ippiImgStruct* to;
    if (!findPair(image, destination, from, to)) return VIZLE_INVALID_ARGUMENT;
    TPortraitFrame frame;
    const int32_t code = findFrame(image, {width, height, faceScale, shiftX, shiftY}, useFeatures, frame, context);
    if (code != VIZLE_OK) return code;
    ReplaceImage(*to, [&](TIppiImage& fresh) { CutPortrait(*from->Image, frame, width, height, fresh); });
    return VIZLE_OK;
  });
}

int32_t VIZL_ExtractFaceImage(HImage image, TPoint (*points)[40], int32_t width, int32_t height, HImage* destination,
                              TPoint (*destinationPoints)[40]) {
  return Exported([=] {
    ippiImgStruct* record = FindImage(image);
    if (record == nullptr || points == nullptr || destination == nullptr || destinationPoints == nullptr) {
      return VIZLE_INVALID_ARGUMENT;
    }
    // The handle comes last, so that a failure leaves none behind.
    TIppiImage face;
    TPoint facePoints[40];
    if (!ExtractFace(*record->Image, *points, width, height, face, facePoints)) return VIZLE_INVALID_ARGUMENT;
    NewImage(destination)->Image->Swap(face);
    std::copy(std::begin(facePoints), std::end(facePoints), *destinationPoints);
    return VIZLE_OK;
  });
}
