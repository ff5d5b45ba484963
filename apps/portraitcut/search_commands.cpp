// detect, features and eyes: what the library finds, without an output picture.
#include "commands.h"
#include "faces.h"

void runDetect(const Options& options, const Picture& picture, Result& result) {
  for (const TFacePosition& face : findFaces(picture, options.detection.minimumFace)) {
    result.faces.emplace_back().face = face;
  }
}

void runFeatures(const Options& options, const Picture& picture, Result& result) {
  runDetect(options, picture, result);
  for (FaceResult& found : result.faces) found.points = findPoints(picture, found.face);
}

void runEyes(const Options& options, const Picture& picture, Result& result) {
  runDetect(options, picture, result);
  for (FaceResult& found : result.faces) found.eyes = findEyes(picture, found.face);
}
