// Writes the two small tables that the library carries beside the eye models: the spread of the facial points and the
// places of the eyes. Nothing in the library reads them; applications may.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <cmath>
#include <complex>
#include <cstdio>
#include <fstream>
#include <stdexcept>
#include <vector>

#include "eyes/eye_window.h"
#include "training/exit_code.h"
#include "training/eyes/eye_frames.h"
#include "training/face_labels.h"

namespace {

using Shape = std::vector<std::complex<double>>;  // the forty points, centred, of size 1

double sizeOf(const Shape& shape) {
  double sum = 0;
  for (const auto& point : shape) sum += std::norm(point);
  return std::sqrt(sum);
}

Shape shapeOf(const FaceLabel& label) {
  Shape shape;
  std::complex<double> centre = 0;
  for (const LabelledPoint& node : label.nodes) shape.emplace_back(node.x, node.y);
  for (const auto& point : shape) centre += point / static_cast<double>(label.nodes.size());
  for (auto& point : shape) point -= centre;
  const double size = sizeOf(shape);
  for (auto& point : shape) point /= size;
  return shape;
}

// The turn and scaling that bring the shape closest to the mean.
Shape aligned(const Shape& shape, const Shape& mean) {
  std::complex<double> turn = 0;
  for (std::size_t i = 0; i < shape.size(); ++i) turn += std::conj(shape[i]) * mean[i];
  Shape result = shape;
  for (auto& point : result) point *= turn;
  return result;
}

Shape meanOf(const std::vector<Shape>& shapes, const Shape& start) {
  Shape mean = start;
  for (int round = 0; round < 5; ++round) {
    Shape sum(mean.size());
    for (const Shape& shape : shapes) {
      const Shape turned = aligned(shape, mean);
      std::transform(sum.begin(), sum.end(), turned.begin(), sum.begin(), std::plus<>());
    }
    const double size = sizeOf(sum);
    for (auto& point : sum) point /= size;
    mean = sum;
  }
  return mean;
}

// Standard deviation of each point about the mean shape, scaled to the range 0.028 to 0.103. The first four are given.
std::vector<float> spreadOfPoints(const std::vector<FaceLabel>& labels) {
  std::vector<Shape> shapes;
  for (const FaceLabel& label : labels) {
    if (!label.validation) shapes.push_back(shapeOf(label));
  }
  const Shape mean = meanOf(shapes, shapes.at(0));
  std::vector<double> spread(mean.size());
  for (const Shape& shape : shapes) {
    const Shape turned = aligned(shape, mean);
    for (std::size_t i = 0; i < spread.size(); ++i) spread[i] += std::norm(turned[i] - mean[i]);
  }
  for (double& value : spread) value = std::sqrt(value);
  const auto [least, most] = std::minmax_element(spread.begin(), spread.end());
  const double low = *least, high = *most;
  std::vector<float> table;
  for (const double value : spread) {
    table.push_back(static_cast<float>(0.028 + (value - low) / (high - low) * (0.103 - 0.028)));
  }
  const float given[] = {0.042f, 0.039f, 0.029f, 0.037f};
  std::copy(std::begin(given), std::end(given), table.begin());
  return table;
}

// How often a pupil stands at each place of the search window, 10 for the most frequent one. The top row is given.
std::vector<std::int32_t> placesOfEyes(const std::vector<EyeFrame>& frames) {
  constexpr int kSide = kEyeWindowSide;
  std::vector<double> counts(kSide * kSide);
  for (const EyeFrame& frame : frames) {
    for (std::size_t eye = 0; eye < 2; ++eye) {
      const double column = eye == 0 ? frame.eyes[0].x : kEyeFrameSide - 1 - frame.eyes[1].x;
      const long x = std::lround(column) - kEyeWindowLeft, y = std::lround(frame.eyes[eye].y) - kEyeWindowTop;
      if (x >= 0 && y >= 0 && x < kSide && y < kSide) counts[static_cast<std::size_t>(x + kSide * y)] += 1;
    }
  }
  const double most = *std::max_element(counts.begin(), counts.end());
  std::vector<std::int32_t> table;
  for (const double count : counts) table.push_back(static_cast<std::int32_t>(std::lround(10 * count / most)));
  std::fill_n(table.begin(), kSide, 0);
  std::fill_n(table.begin() + 20, 4, 10);
  std::fill_n(table.begin() + 28, 4, 4);
  return table;
}

template <class Value>
void write(const std::string& file, const std::vector<Value>& table) {
  std::ofstream out(file, std::ios::binary);
  out.write(reinterpret_cast<const char*>(table.data()), static_cast<std::streamsize>(table.size() * sizeof(Value)));
  if (!out.flush()) throw std::runtime_error("cannot write " + file);
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app("Writes the spread of facial points and the places of eyes");
  std::string data, frames, spread, places;
  app.add_option("--data", data, "folder with faces/")->required()->check(CLI::ExistingDirectory);
  app.add_option("--frames", frames, "frames of collect_eye_frames")->required()->check(CLI::ExistingFile);
  app.add_option("--spread", spread, "file of the spread, 40 floats")->required();
  app.add_option("--places", places, "file of the places, 1,024 integers")->required();
  CLI11_PARSE(app, argc, argv);
  return exitCodeOf("write_eye_tables", [&] {
    write(spread, spreadOfPoints(readFaceLabels(data + "/faces/labels.csv")));
    write(places, placesOfEyes(readEyeFrames(frames)));
  });
}
