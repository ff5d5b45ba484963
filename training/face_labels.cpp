#include "training/face_labels.h"

#include <cmath>
#include <fstream>
#include <numbers>
#include <sstream>
#include <stdexcept>

namespace {

constexpr double kLeftEyeX = 0.293;
constexpr double kRightEyeX = 0.687;
constexpr double kEyeY = 0.413;
constexpr std::size_t kFirstNodeColumn = 11;
constexpr std::size_t kColumns = kFirstNodeColumn + 80;

std::vector<std::string> splitRow(const std::string& row) {
  std::vector<std::string> cells;
  std::stringstream stream(row);
  for (std::string cell; std::getline(stream, cell, ',');) cells.push_back(cell);
  return cells;
}

FaceLabel parseRow(const std::string& row) {
  const std::vector<std::string> cells = splitRow(row);
  if (cells.size() != kColumns) throw std::runtime_error("labels: a row has the wrong number of cells: " + row);
  FaceLabel label{cells[0], cells[1], cells[2], cells[3] == "val", std::stod(cells[7]), std::stod(cells[8]), {}};
  for (std::size_t k = 0; k < label.nodes.size(); ++k) {
    label.nodes[k] = {std::stod(cells[kFirstNodeColumn + 2 * k]), std::stod(cells[kFirstNodeColumn + 2 * k + 1])};
  }
  return label;
}

}  // namespace

std::vector<FaceLabel> readFaceLabels(const std::string& csvFile) {
  std::ifstream file(csvFile);
  if (!file) throw std::runtime_error("cannot open " + csvFile);
  std::string row;
  std::getline(file, row);
  std::vector<FaceLabel> labels;
  while (std::getline(file, row)) {
    if (!row.empty()) labels.push_back(parseRow(row));
  }
  return labels;
}

FaceSquare faceSquare(const FaceLabel& label) {
  const LabelledPoint a = label.nodes[0];
  const LabelledPoint b = label.nodes[1];
  const double angle = std::atan2(b.y - a.y, b.x - a.x);
  const double w = std::hypot(b.x - a.x, b.y - a.y) / (kRightEyeX - kLeftEyeX);
  const double right = (0.5 - 0.5 * (kLeftEyeX + kRightEyeX)) * w;
  const double down = (0.5 - kEyeY) * w;
  return {0.5 * (a.x + b.x) + right * std::cos(angle) - down * std::sin(angle),
          0.5 * (a.y + b.y) + right * std::sin(angle) + down * std::cos(angle), w, angle * 180.0 / std::numbers::pi};
}
