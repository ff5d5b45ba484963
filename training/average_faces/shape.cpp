#include "training/average_faces/shape.h"

namespace {

using Complex = std::complex<double>;

Complex complex(LabelledPoint p) { return {p.x, p.y}; }

Complex centre(const Shape& shape) {
  Complex sum = 0;
  for (const LabelledPoint p : shape) sum += complex(p);
  return sum / static_cast<double>(shape.size());
}

Shape moved(const Shape& shape, const Similarity& move) {
  Shape result;
  for (const LabelledPoint p : shape) result.push_back(move(p));
  return result;
}

}  // namespace

LabelledPoint Similarity::operator()(LabelledPoint p) const {
  const Complex z = factor * complex(p) + offset;
  return {z.real(), z.imag()};
}

Similarity fitSimilarity(const Shape& from, const Shape& to) {
  const Complex fromCentre = centre(from);
  const Complex toCentre = centre(to);
  Complex product = 0;
  double square = 0;
  for (std::size_t k = 0; k < from.size(); ++k) {
    const Complex a = complex(from[k]) - fromCentre;
    product += std::conj(a) * (complex(to[k]) - toCentre);
    square += std::norm(a);
  }
  const Complex factor = product / square;
  return {factor, toCentre - factor * fromCentre};
}

Similarity eyesToFrame(const Shape& shape) {
  const Complex factor = kFrameEyeDistance / (complex(shape[1]) - complex(shape[0]));
  return {factor, complex(kFrameEyeMiddle) - factor * 0.5 * (complex(shape[0]) + complex(shape[1]))};
}

Shape meanShape(const std::vector<Shape>& shapes) {
  constexpr int kRounds = 4;  // the mean stands still after two or three
  Shape mean = moved(shapes[0], eyesToFrame(shapes[0]));
  for (int round = 0; round < kRounds; ++round) {
    Shape sum(mean.size(), {0, 0});
    for (const Shape& shape : shapes) {
      const Similarity fit = fitSimilarity(shape, mean);
      for (std::size_t k = 0; k < sum.size(); ++k) {
        const LabelledPoint p = fit(shape[k]);
        sum[k] = {sum[k].x + p.x, sum[k].y + p.y};
      }
    }
    for (LabelledPoint& p : sum) {
      p = {p.x / static_cast<double>(shapes.size()), p.y / static_cast<double>(shapes.size())};
    }
    mean = moved(sum, eyesToFrame(sum));
  }
  return mean;
}

Shape frameBorder() {
  constexpr int kSteps = 4;
  constexpr double kOutside = 4.0;  // pixels, so that the whole frame lies in triangles
  Shape border;
  for (int k = 0; k < kSteps; ++k) {
    const double x = -kOutside + k * (kFrameWidth + 2 * kOutside) / kSteps;
    const double y = -kOutside + k * (kFrameHeight + 2 * kOutside) / kSteps;
    border.push_back({x, -kOutside});
    border.push_back({kFrameWidth + kOutside, y});
    border.push_back({kFrameWidth - x, kFrameHeight + kOutside});
    border.push_back({-kOutside, kFrameHeight - y});
  }
  return border;
}
