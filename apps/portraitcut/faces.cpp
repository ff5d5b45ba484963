#include "faces.h"

#include <algorithm>
#include <cmath>

#include "failure.h"

namespace {

constexpr size_t kMostFaces = 512;

struct LevelSettings {
  bool tilted;
  bool angles;
  int32_t width;  // pixels of the working picture
};

// The same as the library's own levels.
constexpr LevelSettings kLevels[] = {{false, false, 100}, {true, false, 256}, {true, true, 384}};

// Two of the same face lie closer together than two heads can.
bool samePlace(const TFacePosition& a, const TFacePosition& b) {
  return std::hypot(a.xc - b.xc, a.yc - b.yc) < 0.4 * std::min(a.w, b.w);
}

void dropDoubles(std::vector<TFacePosition>& faces) {
  std::vector<TFacePosition> kept;
  for (const TFacePosition& face : faces) {
    const auto isSame = [&](const TFacePosition& other) { return samePlace(face, other); };
    if (std::none_of(kept.begin(), kept.end(), isSame)) kept.push_back(face);
  }
  faces = kept;
}

}  // namespace

void applySettings(const DetectionOptions& options, int jpegQuality) {
  const LevelSettings& level = kLevels[static_cast<int>(options.performance)];
  const int32_t width = options.workingWidth > 0 ? options.workingWidth : level.width;
  requireOk(VIZL_SetFaceDetectionParameters(level.tilted, level.angles, width), "setting the detection");
  requireOk(VIZL_SetFaceDetectionThreshold(options.threshold), "setting the threshold");
  requireOk(VIZL_SetJpegCompressionQuality(jpegQuality), "setting the quality");
}

std::vector<TFacePosition> findFaces(const Picture& picture, int minimumFace) {
  std::vector<TFacePosition> faces(kMostFaces);
  int32_t count = 0;
  const int32_t code = VIZL_DetectMultipleFaces(picture.handle(), &count, faces.data(),
                                                static_cast<int32_t>(kMostFaces * sizeof(TFacePosition)));
  if (code == VIZLE_NO_FACE) return {};
  requireOk(code, "looking for faces");
  faces.resize(static_cast<size_t>(count));
  std::erase_if(faces, [=](const TFacePosition& face) { return face.w < minimumFace; });
  std::stable_sort(faces.begin(), faces.end(),
                   [](const TFacePosition& a, const TFacePosition& b) { return a.w > b.w; });
  dropDoubles(faces);
  return faces;
}

std::vector<TFacePosition> chooseFaces(std::vector<TFacePosition> faces, int number) {
  if (faces.empty()) requireOk(VIZLE_NO_FACE, "");
  if (number == 0) return faces;
  if (static_cast<size_t>(number) > faces.size()) {
    throw Failure("there is no face " + std::to_string(number) + ", only " + std::to_string(faces.size()));
  }
  return {faces[static_cast<size_t>(number) - 1]};
}

FacePoints findPoints(const Picture& picture, const TFacePosition& face) {
  TPoint points[kPointCount];
  float confidences[kPointCount];
  requireOk(VIZL_DetectFacialFeaturesInRegionEx(picture.handle(), &face, &points, &confidences),
            "looking for the points of the face");
  FacePoints found;
  std::copy(points, points + kPointCount, found.points.begin());
  std::copy(confidences, confidences + kPointCount, found.confidences.begin());
  return found;
}

std::array<TPoint, 2> findEyes(const Picture& picture, const TFacePosition& face) {
  TPoint points[kPointCount];
  requireOk(VIZL_DetectEyesInRegion(picture.handle(), &face, &points), "looking for the eyes");
  return {points[0], points[1]};
}
