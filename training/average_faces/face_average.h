// The mean of many faces, each warped onto their mean shape.
#pragma once

#include <string>
#include <vector>

#include "training/average_faces/picture.h"
#include "training/average_faces/shape.h"

struct FaceAverage {
  Picture picture;  // kFrameWidth by kFrameHeight
  Shape shape;      // forty nodes in it
  int count = 0;    // faces that went into it
};

Shape shapeOf(const FaceLabel& label);

// `folder` holds the pictures that the labels name.
FaceAverage averageFaces(const std::vector<const FaceLabel*>& faces, const std::string& folder);
