// The labelled training faces: one row of labels.csv each, and the square that a detection should give.
#pragma once

#include <array>
#include <string>
#include <vector>

struct LabelledPoint {
  double x;
  double y;  // pixels, growing downward
};

struct FaceLabel {
  std::string file;  // below the folder faces/
  std::string source;
  std::string person;
  bool validation;  // split "val": never trained on
  double iod;       // distance of the pupils, pixels
  double roll;      // degrees, positive = clockwise on the screen
  std::array<LabelledPoint, 40> nodes;
};

// A face as the detector should report it: an upright square in the face's own frame, turned by `roll`.
struct FaceSquare {
  double xc;  // centre, pixels
  double yc;
  double w;     // side, pixels
  double roll;  // degrees, positive = clockwise on the screen
};

// Throws std::runtime_error when the file is missing or a row is damaged.
std::vector<FaceLabel> readFaceLabels(const std::string& csvFile);

// In units of the side, the eyes stand at (0.293, 0.413) and (0.687, 0.413) from the square's top left.
FaceSquare faceSquare(const FaceLabel& label);
