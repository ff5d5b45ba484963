#include "settings_mark.h"

#include <cstdint>
#include <cstdio>
#include <initializer_list>

namespace {

// FNV-1a with 64 bits.
uint64_t hashOf(const std::string& text) {
  uint64_t hash = 0xcbf29ce484222325u;
  for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001b3u;
  return hash;
}

}  // namespace

std::string settingsMark(const Options& options) {
  const DetectionOptions& detection = options.detection;
  const CutOptions& cut = options.cut;
  std::string text = options.output.path + '\n';
  for (const double value : {double(options.command),
                             double(detection.performance),
                             double(detection.threshold),
                             double(detection.workingWidth),
                             double(detection.minimumFace),
                             double(cut.size.width),
                             double(cut.size.height),
                             cut.dotsPerInch,
                             double(cut.framing),
                             cut.head.headHeight,
                             cut.head.eyesFromTop,
                             cut.faceScale,
                             cut.shiftX,
                             cut.shiftY,
                             double(cut.face),
                             double(cut.padding),
                             double(cut.fill.red),
                             double(cut.fill.green),
                             double(cut.fill.blue),
                             double(options.output.format),
                             double(options.output.quality),
                             double(options.storedCoordinates),
                             double(options.input.ignoreOrientation),
                             double(options.standard)}) {
    char number[40];
    std::snprintf(number, sizeof number, "%.17g,", value);
    text += number;
  }
  char mark[17];
  std::snprintf(mark, sizeof mark, "%016llx", static_cast<unsigned long long>(hashOf(text)));
  return mark;
}
