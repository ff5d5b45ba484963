// Turned test pictures.
#pragma once

#include "training/face_labels.h"

class TIppiImage;

namespace evaluation {

// Turns the gray picture by `degrees` (clockwise on the screen) about a point, at the same size. What turns
// into the picture from outside continues its edge pixels: black corners would cut into heads.
void turnPicture(TIppiImage& gray, double degrees, double xCenter, double yCenter, TIppiImage& turned);

// The labelled square after the picture was turned about the square's own centre.
FaceSquare turnedSquare(const FaceSquare& square, double degrees);

}  // namespace evaluation
