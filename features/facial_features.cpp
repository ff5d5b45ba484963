#include "features/facial_features.h"

#include <algorithm>
#include <cstddef>

#include "api/vizl_api.h"
#include "detect/detect_face.h"
#include "features/TNeuroLocator.h"
#include "features/face_image.h"
#include "image/to_int.h"

namespace {

void storePoints(const TGrid& grid, TPoint (&points)[40]) {
  for (std::size_t n = 0; n < 40; ++n) {
    const TSPoint& node = grid.Nodes[n];
    points[n] = {TruncateToInt(static_cast<double>(node.x)), TruncateToInt(static_cast<double>(node.y))};
  }
}

}  // namespace

int DetectFacialFeaturesInRegion(TIppiImage* image, const TFacePosition* face, TPoint (*points)[40],
                                 float (*confidences)[40], int /*context*/) {
  if (image == nullptr || face == nullptr || points == nullptr || NeuroLocator == nullptr) {
    return VIZLE_INVALID_ARGUMENT;
  }
  TFaceImage faceImage;
  const int code = faceImage.Cut(*image, *face);
  if (code != VIZLE_OK) return code;

  TNeuroLocator locator(*NeuroLocator);
  TGrid grid = faceImage.Expected;
  locator.Result = &grid;
  locator.LocateGrid(faceImage.Face);
  faceImage.BackToImage(grid);
  if (confidences != nullptr) {
    std::copy(std::begin(locator.NodeConfidence), std::end(locator.NodeConfidence), *confidences);
  }
  storePoints(grid, *points);
  return VIZLE_OK;
}

int DetectFacialFeatures(TIppiImage* image, TPoint (*points)[40], float (*confidences)[40], int context) {
  if (image == nullptr || points == nullptr) return VIZLE_INVALID_ARGUMENT;
  TFacePosition face = {};
  int confidence = 0;
  const int code = DetectFace(image, &face, confidence, context);
  if (code == VIZLE_NO_FACE) std::fill(std::begin(*points), std::end(*points), TPoint{0, 0});
  if (code != VIZLE_OK) return code;
  return DetectFacialFeaturesInRegion(image, &face, points, confidences, context);
}
