#include "training/average_faces/triangulation.h"

#include <algorithm>
#include <utility>

namespace {

using Edge = std::pair<std::size_t, std::size_t>;

double cross(LabelledPoint a, LabelledPoint b, LabelledPoint c) {
  return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
}

// The sign of this determinant tells the side of the circle through a, b, c on which p lies.
bool circleHolds(LabelledPoint a, LabelledPoint b, LabelledPoint c, LabelledPoint p) {
  const double ax = a.x - p.x, ay = a.y - p.y, bx = b.x - p.x, by = b.y - p.y, cx = c.x - p.x, cy = c.y - p.y;
  const double det = (ax * ax + ay * ay) * (bx * cy - cx * by) - (bx * bx + by * by) * (ax * cy - cx * ay) +
                     (cx * cx + cy * cy) * (ax * by - bx * ay);
  return cross(a, b, c) > 0 ? det > 0 : det < 0;
}

// An edge that two removed triangles share lies inside the hole; the others bound it.
std::vector<Edge> boundary(const std::vector<Triangle>& removed) {
  std::vector<Edge> edges;
  for (const Triangle& t : removed) {
    for (std::size_t k = 0; k < 3; ++k) {
      const Edge edge = std::minmax({t[k], t[(k + 1) % 3]});
      const auto twin = std::find(edges.begin(), edges.end(), edge);
      if (twin == edges.end()) {
        edges.push_back(edge);
      } else {
        edges.erase(twin);
      }
    }
  }
  return edges;
}

}  // namespace

// Insertion of one point after the other: the triangles whose circle holds the new point make room for
// a fan around it. Starts from one triangle far around everything, whose corners are dropped at the end.
std::vector<Triangle> triangulate(const std::vector<LabelledPoint>& points) {
  constexpr double kFar = 1e5;  // pixels; far beyond any picture here
  const std::size_t count = points.size();
  std::vector<LabelledPoint> all(points);
  all.insert(all.end(), {{-kFar, -kFar}, {kFar, -kFar}, {0.0, kFar}});
  std::vector<Triangle> triangles{{count, count + 1, count + 2}};
  for (std::size_t p = 0; p < count; ++p) {
    const auto hit = std::stable_partition(triangles.begin(), triangles.end(), [&](const Triangle& t) {
      return !circleHolds(all[t[0]], all[t[1]], all[t[2]], all[p]);
    });
    const std::vector<Edge> edges = boundary({hit, triangles.end()});
    triangles.erase(hit, triangles.end());
    for (const auto& [from, to] : edges) triangles.push_back({from, to, p});
  }
  std::erase_if(triangles, [count](const Triangle& t) { return std::max({t[0], t[1], t[2]}) >= count; });
  return triangles;
}
