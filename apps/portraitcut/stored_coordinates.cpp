#include "stored_coordinates.h"

#include <algorithm>

namespace {

void storeFace(TFacePosition& face, Orientation orientation, Size upright) {
  const TPoint centre = orientation.toStored({face.xc, face.yc}, upright);
  face.xc = centre.x;
  face.yc = centre.y;
  face.angle = orientation.angleToStored(face.angle);
}

void storeFrame(Frame& frame, Orientation orientation, Size upright) {
  const TPoint a = orientation.toStored({frame.x1, frame.y1}, upright);
  const TPoint b = orientation.toStored({frame.x2, frame.y2}, upright);
  frame = {std::min(a.x, b.x), std::min(a.y, b.y), std::max(a.x, b.x), std::max(a.y, b.y)};
}

}  // namespace

void tellInStoredCoordinates(Result& result) {
  const Orientation orientation = result.orientation;
  const Size upright = result.size;
  for (FaceResult& found : result.faces) {
    storeFace(found.face, orientation, upright);
    if (found.points) {
      for (TPoint& point : found.points->points) point = orientation.toStored(point, upright);
    }
    if (found.eyes) {
      for (TPoint& point : *found.eyes) point = orientation.toStored(point, upright);
    }
    if (found.frame) storeFrame(*found.frame, orientation, upright);
  }
  if (orientation.swapsSides()) std::swap(result.size.width, result.size.height);
  result.storedCoordinates = true;
}
