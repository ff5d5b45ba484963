// The same face turned, reduced or mirrored, together with its labels.
#pragma once

#include <optional>
#include <utility>

#include "api/vizl_api.h"
#include "image/TIppiImage.h"
#include "training/evaluation/point_errors.h"
#include "training/face_labels.h"

class TIppiFaceDetector;

namespace evaluation {

// For each node its other half after mirroring.
extern const std::array<std::size_t, 40> kMirroredNodes;

// A gray picture and the labelled points in it. Point (x, y) lies in pixel (trunc x, trunc y): the middle of the first
// pixel is (0.5, 0.5).
struct FaceView {
  TIppiImage picture;
  FacePoints points;
};

FaceSquare squareOf(const FacePoints& points);

void copyView(FaceView& view, FaceView& copy);
// Clockwise on the screen, about the centre of the face's square.
void turnView(FaceView& view, double degrees, FaceView& turned);
// Reduced so that the face's square is `width` pixels wide; a smaller face stays as it is and false comes back.
bool reduceView(FaceView& view, double width, FaceView& reduced);
void mirrorView(FaceView& view, FaceView& mirrored);

// The face that the library reports at the square; none if no detection matches.
std::optional<TFacePosition> detectedFace(TIppiFaceDetector& detector, TIppiImage& gray, const FaceSquare& square);

}  // namespace evaluation
