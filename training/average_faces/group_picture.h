// Several averages at their sizes and tilts in one picture.
#pragma once

#include <vector>

#include "training/average_faces/face_average.h"

struct Placement {
  double x;  // middle between the eyes, pixels
  double y;
  double w;     // side of the face's square, pixels
  double tilt;  // degrees, positive = clockwise on the screen
};

// Average face k in place k, over a ground that fades from light to dark. `truth` receives the nodes of
// each face in the picture.
Picture groupPicture(const std::vector<FaceAverage>& averages, const std::vector<Placement>& places, int width,
                     int height, std::vector<FaceLabel>& truth);
