// Running the detector on picture files as the library's own calls do.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "training/evaluation/matching.h"

class TIppiFaceDetector;
class TIppiImage;

namespace evaluation {

// The cascade of a file, or the one inside the library for an empty name. Throws std::runtime_error.
std::unique_ptr<TIppiFaceDetector> openCascade(const std::string& file);

// Loads a JPEG, PNG or BMP picture in colour and makes the gray copy that detection works on, as an image
// handle does. Throws std::runtime_error.
void loadGray(const std::string& file, TIppiImage& gray);

struct Search {
  std::vector<Detection> faces;
  double milliseconds = 0;  // of the detection alone
};

// All faces with the process-wide settings.
Search detectAll(TIppiFaceDetector& detector, TIppiImage& gray);

}  // namespace evaluation
