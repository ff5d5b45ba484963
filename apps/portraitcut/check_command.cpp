#include "commands.h"
#include "faces.h"
#include "portrait_check.h"

void runCheck(const Options& options, const Picture& picture, Result& result) {
  const std::vector<TFacePosition> faces = findFaces(picture, options.detection.minimumFace);
  FaceResult& found = result.faces.emplace_back();
  found.face = chooseFaces(faces, 1).front();
  found.points = findPoints(picture, found.face);
  result.measures = checkPortrait(options.standard, picture.size(), faces.size(), *found.points);
}
