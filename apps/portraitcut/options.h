// What the command line asks for.
#ifndef APPS_PORTRAITCUT_OPTIONS_H
#define APPS_PORTRAITCUT_OPTIONS_H

#include <string>
#include <vector>

#include "geometry.h"

enum class Command { kCut, kDetect, kFeatures, kEyes, kAnnotate, kCheck };
enum class Performance { kFast = 0, kBalanced = 1, kThorough = 2 };
enum class Padding { kShrink, kFill, kEdge, kMirror, kRefuse };
enum class Format { kAuto, kJpeg, kPng, kBmp };
enum class Report { kNone, kJson, kCsv, kText };

// What the portrait's frame is measured by.
enum class Framing {
  kFace,  // the square around the face
  kEyes,  // the distance of the eyes
  kHead,  // chin and eyes, so that the head fills a wanted share of the height
};

enum class Standard { kIcao, kUs };

// The numbers of kHead framing, as shares of the portrait's height.
struct HeadFraming {
  double headHeight = 0;   // chin to crown
  double eyesFromTop = 0;  // the line of the eyes
};

struct DetectionOptions {
  Performance performance = Performance::kThorough;
  int threshold = 3;
  int workingWidth = 0;  // pixels, 0: that of the performance level
  int minimumFace = 0;   // pixels, smaller faces are passed over
};

struct CutOptions {
  Size size{600, 800};     // pixels
  double dotsPerInch = 0;  // 0: none is written into the file
  Framing framing = Framing::kEyes;
  HeadFraming head;
  double faceScale = 1;
  double shiftX = 0;  // in widths and heights of the natural frame
  double shiftY = 0;
  int face = 1;  // 1 is the largest; 0 means all
  Padding padding = Padding::kShrink;
  Colour fill;  // beyond the picture, and behind it where it is transparent
};

struct OutputOptions {
  std::string path;  // file or folder; "-" is standard output
  Format format = Format::kAuto;
  int quality = 90;
  bool force = false;
};

struct InputOptions {
  std::vector<std::string> paths;
  std::string listFile;  // of paths, one a line; "-" is standard input
  bool nullSeparated = false;
  bool pictureStream = false;  // pictures in JSON lines on standard input
  bool recursive = false;
  std::string base;  // names below it are mirrored in the output folder
  bool ignoreOrientation = false;
};

struct BatchOptions {
  int jobs = 0;            // 0: one for each processor
  double fileTimeout = 0;  // seconds for one file, 0: no limit
  std::string log;
  bool resume = false;
  bool quiet = false;
};

struct Options {
  Command command = Command::kCut;
  InputOptions input;
  DetectionOptions detection;
  CutOptions cut;
  OutputOptions output;
  BatchOptions batch;
  Report report = Report::kNone;
  bool storedCoordinates = false;
  Standard standard = Standard::kIcao;
};

#endif
