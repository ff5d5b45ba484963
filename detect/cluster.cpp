#include "detect/TIppiFaceDetector.h"
#include "detect/neighbours.h"

void TIppiFaceDetector::ClusterFace(std::vector<TRectangle>& rects, int& x1, int& y1, int& x2, int& y2, int& count,
                                    int context) {
  x1 = y1 = x2 = y2 = count = 0;
  const std::vector<int> supported = FindSupported(rects, context);
  if (supported.empty()) return;
  long long sums[4] = {};
  for (const int i : supported) {
    const TRectangle& r = rects[static_cast<std::size_t>(i)];
    sums[0] += r.x1;
    sums[1] += r.y1;
    sums[2] += r.x2;
    sums[3] += r.y2;
  }
  count = static_cast<int>(supported.size());
  x1 = static_cast<int>(sums[0] / count);
  y1 = static_cast<int>(sums[1] / count);
  x2 = static_cast<int>(sums[2] / count);
  y2 = static_cast<int>(sums[3] / count);
}
