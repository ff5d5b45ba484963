// The measures of a cascade, each printed as a table on standard output.
#pragma once

#include <string>
#include <vector>

#include "training/evaluation/findings.h"
#include "training/evaluation/matching.h"
#include "training/face_labels.h"

class TIppiFaceDetector;

namespace evaluation {

struct Setting {
  TIppiFaceDetector* detector;  // not owned
  Findings* findings;           // not owned
  unsigned threads = 2;
  Criterion criterion;
};

// Share of the faces found, place, size and angle, by source. Files of the labels lie below `folder`.
void measureFaces(const Setting& setting, const std::string& folder, const std::vector<FaceLabel>& faces,
                  const std::string& part);

// The same faces with the picture turned about them by -22 to +22 degrees.
void measureTurnedFaces(const Setting& setting, const std::string& folder, const std::vector<FaceLabel>& faces);

// False faces on pictures without any.
void measureBackgrounds(const Setting& setting, const std::vector<std::string>& files);

// One upright scan at full size of the listed pictures, hits grouped with thresholds from 1 to `maxThreshold`.
void measureRawScan(const Setting& setting, const std::string& listFile, int maxThreshold);

}  // namespace evaluation
