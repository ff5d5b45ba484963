#include <cstdio>
#include <map>

#include "image/TIppiImage.h"
#include "training/evaluation/detection.h"
#include "training/evaluation/measures.h"
#include "training/evaluation/parallel.h"

namespace evaluation {

namespace {

struct FaceOutcome {
  Tally tally;
  double milliseconds = 0;
};

void printRow(const char* name, const Tally& tally) {
  const Deviation mean = tally.mean();
  std::printf("  %-32s %4d / %4d  %6.2f %%  %+.3f  %+.3f  %.3f  %+6.2f  %5.2f  %5d  %5d\n", name, tally.found,
              tally.faces, 100 * tally.share(), mean.dx, mean.dy, mean.width, mean.angle, tally.meanAbsAngle(),
              tally.falseFaces, tally.repeats);
}

void printTable(const std::string& part, const std::map<std::string, Tally>& bySource, const Tally& all) {
  std::printf("\n%s: found, mean offset of the centre (widths, right and down), mean width ratio, error of the angle\n",
              part.c_str());
  std::printf("(degrees, signed and absolute), false faces, repeated faces\n");
  for (const auto& [source, tally] : bySource) printRow(source.c_str(), tally);
  printRow("all", all);
}

}  // namespace

void measureFaces(const Setting& setting, const std::string& folder, const std::vector<FaceLabel>& faces,
                  const std::string& part) {
  std::vector<FaceOutcome> outcomes(faces.size());
  forEachIndex(faces.size(), setting.threads, [&](std::size_t i) {
    TIppiImage gray;
    loadGray(folder + "/" + faces[i].file, gray);
    const Search search = detectAll(*setting.detector, gray);
    const FaceSquare truth = faceSquare(faces[i]);
    const PictureResult result = judge(truth, search.faces, setting.criterion);
    outcomes[i].tally.add(truth, result);
    outcomes[i].milliseconds = search.milliseconds;
    setting.findings->add(part, faces[i].file, gray, truth, result);
  });
  std::map<std::string, Tally> bySource;
  Tally all;
  double milliseconds = 0;
  for (std::size_t i = 0; i < faces.size(); ++i) {
    bySource[faces[i].source].add(outcomes[i].tally);
    all.add(outcomes[i].tally);
    milliseconds += outcomes[i].milliseconds;
  }
  printTable(part, bySource, all);
  std::printf("  %.1f ms a picture on each of %u threads\n", milliseconds / static_cast<double>(faces.size()),
              setting.threads);
}

}  // namespace evaluation
