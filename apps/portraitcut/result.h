// What a command found out about one file; the reports are made of it.
#ifndef APPS_PORTRAITCUT_RESULT_H
#define APPS_PORTRAITCUT_RESULT_H

#include <vizl_api.h>

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <vector>

#include "geometry.h"
#include "orientation.h"

constexpr int kPointCount = 40;

struct FacePoints {
  std::array<TPoint, kPointCount> points{};
  std::array<float, kPointCount> confidences{};
};

// One number of a portrait against the range that a standard asks for.
struct Measure {
  std::string name;
  std::string unit;
  double value = 0;
  double lowest = 0;
  double highest = 0;
  bool estimated = false;  // leans on the crown or the ears, which no point marks

  bool passes() const { return value >= lowest && value <= highest; }
};

struct FaceResult {
  TFacePosition face{};
  std::optional<FacePoints> points;
  std::optional<std::array<TPoint, 2>> eyes;
  std::optional<Frame> frame;           // of the portrait
  bool asAsked = true;                  // false if the frame had to shrink or move
  std::string output;                   // the portrait's file
  std::vector<unsigned char> portrait;  // its bytes, where it goes back into a stream
};

struct Result {
  std::string input;
  std::string id;  // JSON text of a streamed picture's id
  bool ok = false;
  std::string reason;  // of a failure
  int32_t code = 0;    // of the library, with a failure
  double seconds = 0;
  Size size;  // of the picture in which the coordinates are
  Orientation orientation;
  bool storedCoordinates = false;

  std::vector<FaceResult> faces;
  std::vector<Measure> measures;
  std::string output;  // of a command that writes one picture a file

  bool passes() const {
    return std::all_of(measures.begin(), measures.end(), [](const Measure& measure) { return measure.passes(); });
  }
};

#endif
