// What the forty points tell about a head.
#ifndef APPS_PORTRAITCUT_HEAD_MEASURE_H
#define APPS_PORTRAITCUT_HEAD_MEASURE_H

#include "geometry.h"
#include "result.h"

struct HeadMeasure {
  Spot eyes;            // the middle between the eyes' centres
  double eyeDistance;   // pixels
  double tilt;          // degrees that the picture had to turn clockwise to level the eyes
  double chinDistance;  // pixels from the middle of the eyes to the chin
  double height;        // pixels from chin to crown, estimated
  double width;         // pixels between the sides of the face at eye height
};

HeadMeasure measureHead(const FacePoints& points);

#endif
