#include "training/average_faces/face_average.h"

#include <algorithm>
#include <cmath>
#include <span>
#include <utility>

#include "training/average_faces/triangulation.h"

namespace {

struct Mean {
  Picture sum{kFrameWidth, kFrameHeight};
  std::vector<float> weight = std::vector<float>(kFrameWidth * kFrameHeight);
};

double edge(LabelledPoint a, LabelledPoint b, double x, double y) {
  return (b.x - a.x) * (y - a.y) - (b.y - a.y) * (x - a.x);
}

// 1 well inside a picture, less near its border and only a trace beyond, so that no picture's border draws
// a line in the mean while places that no picture reaches still get some colour.
float weightAt(const Picture& picture, double x, double y) {
  constexpr double kFade = 24.0;  // pixels
  constexpr double kTrace = 1e-3;
  const double depth = std::min({x, y, picture.width - 1 - x, picture.height - 1 - y});
  return static_cast<float>(std::clamp(depth / kFade, kTrace, 1.0));
}

void addPixel(Mean& mean, const Picture& picture, int px, int py, double x, double y) {
  const float weight = weightAt(picture, x, y);
  const Colour colour = sample(picture, x, y);
  for (std::size_t c = 0; c < 3; ++c) mean.sum.at(px, py)[c] += weight * colour[c];
  mean.weight[static_cast<std::size_t>(py * kFrameWidth + px)] += weight;
}

// Adds the pixels of the triangle `to` of the frame, taken from the triangle `from` of the picture.
void addTriangle(Mean& mean, const Picture& picture, const std::array<LabelledPoint, 3>& from,
                 const std::array<LabelledPoint, 3>& to) {
  const double area = edge(to[0], to[1], to[2].x, to[2].y);
  const auto [left, right] = std::minmax({to[0].x, to[1].x, to[2].x});
  const auto [top, bottom] = std::minmax({to[0].y, to[1].y, to[2].y});
  const int lastX = std::min(kFrameWidth - 1, static_cast<int>(right));
  const int lastY = std::min(kFrameHeight - 1, static_cast<int>(bottom));
  for (int y = std::max(0, static_cast<int>(std::ceil(top))); y <= lastY; ++y) {
    for (int x = std::max(0, static_cast<int>(std::ceil(left))); x <= lastX; ++x) {
      const double a = edge(to[1], to[2], x, y) / area;
      const double b = edge(to[2], to[0], x, y) / area;
      const double c = 1.0 - a - b;
      if (a < 0 || b < 0 || c < 0) continue;
      addPixel(mean, picture, x, y, a * from[0].x + b * from[1].x + c * from[2].x,
               a * from[0].y + b * from[1].y + c * from[2].y);
    }
  }
}

void addFace(Mean& mean, const Picture& picture, Shape shape, const Shape& target,
             std::span<const Triangle> triangles) {
  const Similarity toPicture = fitSimilarity({target.begin(), target.begin() + 40}, shape);
  for (std::size_t k = shape.size(); k < target.size(); ++k) shape.push_back(toPicture(target[k]));
  for (const Triangle& t : triangles) {
    addTriangle(mean, picture, {shape[t[0]], shape[t[1]], shape[t[2]]}, {target[t[0]], target[t[1]], target[t[2]]});
  }
}

}  // namespace

Shape shapeOf(const FaceLabel& label) { return {label.nodes.begin(), label.nodes.end()}; }

FaceAverage averageFaces(const std::vector<const FaceLabel*>& faces, const std::string& folder) {
  std::vector<Shape> shapes;
  for (const FaceLabel* face : faces) shapes.push_back(shapeOf(*face));
  FaceAverage result{{}, meanShape(shapes), static_cast<int>(faces.size())};
  Shape target = result.shape;
  for (const LabelledPoint p : frameBorder()) target.push_back(p);
  const std::vector<Triangle> triangles = triangulate(target);
  Mean mean;
  for (std::size_t k = 0; k < faces.size(); ++k) {
    addFace(mean, loadJpeg(folder + "/" + faces[k]->file), shapes[k], target, triangles);
  }
  for (std::size_t i = 0; i < mean.sum.pixels.size(); ++i) {
    for (float& value : mean.sum.pixels[i]) value /= mean.weight[i];
  }
  result.picture = std::move(mean.sum);
  return result;
}
