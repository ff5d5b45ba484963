#include "framing/extract_face.h"

#include <cstddef>
#include <cstdint>

#include "api/vizl_api.h"
#include "features/TGrid.h"
#include "features/face_frame.h"
#include "image/TIppiImage.h"
#include "image/to_int.h"

bool ExtractFace(TIppiImage& image, const TPoint (&points)[40], int width, int height, TIppiImage& face,
                 TPoint (&facePoints)[40]) {
  TGrid grid;
  for (const TPoint& point : points) grid.AddNode({static_cast<float>(point.x), static_cast<float>(point.y)});
  int x1, y1, x2, y2;
  CalculateFaceFramePositionNB(grid, &x1, &y1, &x2, &y2, width, height);
  const int64_t side = static_cast<int64_t>(x2) - x1;
  if (width < 1 || side < 1 || side >= kMaxImageSide) return false;

  const double ratio = width / static_cast<double>(side);
  grid.Shift(-static_cast<float>(x1), -static_cast<float>(y1));
  grid.Scale(static_cast<float>(ratio));
  TIppiImage frame;
  image.CopyTo(frame, x1, y1, x2, y2);
  frame.Resize(face, ratio);
  for (std::size_t n = 0; n < 40; ++n) {
    const TSPoint& node = grid.Nodes[n];
    facePoints[n] = {TruncateToInt(static_cast<double>(node.x)), TruncateToInt(static_cast<double>(node.y))};
  }
  return true;
}
