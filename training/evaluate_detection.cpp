// Measures a face cascade on the pictures that training leaves out.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "detect/TIppiFaceDetector.h"
#include "image/lock.h"
#include "image/params.h"
#include "training/evaluation/detection.h"
#include "training/evaluation/face_set.h"
#include "training/evaluation/measures.h"
#include "training/exit_code.h"

namespace {

struct Options {
  std::string data;
  std::string cascade;
  std::string csv;
  std::string pictures;
  std::string rawList;
  std::vector<std::string> parts = {"faces", "background", "turned", "lowres"};
  std::size_t limit = 0;
  unsigned threads = 2;
  int maxThreshold = 20;
  int threshold = 3;
  int width = 384;
  bool upright = false;
  bool noAngles = false;
  evaluation::Criterion criterion;
};

void addOptions(CLI::App& app, Options& options) {
  app.add_option("--data", options.data, "folder with faces/ and background/")->check(CLI::ExistingDirectory);
  app.add_option("--cascade", options.cascade, "cascade stream; the one in the library if left out")
      ->check(CLI::ExistingFile);
  app.add_option("--max", options.limit, "at most so many pictures a part (0: all)");
  app.add_option("--parts", options.parts, "which of faces, background, turned, lowres")->delimiter(',');
  app.add_option("--threads", options.threads, "number of threads")->check(CLI::Range(1, 256))->capture_default_str();
  app.add_option("--csv", options.csv, "table of misses and false faces");
  app.add_option("--pictures", options.pictures, "folder for annotated pictures of misses and false faces");
  app.add_option("--raw", options.rawList, "list path,x,y,w of pictures for one upright scan at full size");
  app.add_option("--max-threshold", options.maxThreshold, "last threshold of the raw scan")
      ->check(CLI::Range(1, 1000))
      ->capture_default_str();
  app.add_option("--threshold", options.threshold, "like hits that make a face")
      ->check(CLI::Range(1, 1000))
      ->capture_default_str();
  app.add_option("--width", options.width, "internal width, pixels")
      ->check(CLI::Range(20, 65535))
      ->capture_default_str();
  app.add_flag("--upright", options.upright, "no search for tilted faces");
  app.add_flag("--no-angles", options.noAngles, "angles of -15, 0 and 15 degrees only");
  app.add_option("--centre", options.criterion.centre, "largest distance of the centre, widths")->capture_default_str();
  app.add_option("--min-width", options.criterion.minWidth, "smallest width, widths")->capture_default_str();
  app.add_option("--max-width", options.criterion.maxWidth, "largest width, widths")->capture_default_str();
}

bool wants(const Options& options, const char* part) {
  return std::find(options.parts.begin(), options.parts.end(), part) != options.parts.end();
}

// As VIZL_SetFaceDetectionParameters and VIZL_SetFaceDetectionThreshold do for the whole process.
void applySettings(const Options& options) {
  SetFaceDetectionParameters(!options.upright, !options.noAngles, options.width, 0);
  SetFaceDetectionThreshold(std::max(options.threshold - 1, 1), options.threshold, 0);
}

void measureData(const Options& options, const evaluation::Setting& setting) {
  const std::string folder = options.data + "/faces";
  const std::vector<FaceLabel> labels = readFaceLabels(folder + "/labels.csv");
  const auto faces = evaluation::thinned(evaluation::validationFaces(labels, "images/"), options.limit);
  if (wants(options, "faces")) evaluation::measureFaces(setting, folder, faces, "faces");
  if (wants(options, "background")) {
    const auto files = evaluation::heldOutBackgrounds(options.data + "/background");
    evaluation::measureBackgrounds(setting, evaluation::thinned(files, options.limit));
  }
  if (wants(options, "turned")) evaluation::measureTurnedFaces(setting, folder, faces);
  if (wants(options, "lowres")) {
    const auto small = evaluation::thinned(evaluation::validationFaces(labels, "lowres/"), options.limit);
    evaluation::measureFaces(setting, folder, small, "lowres");
  }
}

void run(const Options& options) {
  // The threads of a raw scan make contexts of their own in one table.
  mutex_params = NewMutex();
  // Whole lines at once also where the output is a file: a run takes minutes.
  std::setvbuf(stdout, nullptr, _IOLBF, BUFSIZ);
  applySettings(options);
  const auto detector = evaluation::openCascade(options.cascade);
  if (!options.pictures.empty()) std::filesystem::create_directories(options.pictures);
  evaluation::Findings findings(options.csv, options.pictures);
  const evaluation::Setting setting{detector.get(), &findings, options.threads, options.criterion};
  std::printf("%d stages, %d classifiers\n", detector->StageCount, detector->ClassifierCount);
  if (!options.data.empty()) measureData(options, setting);
  if (!options.rawList.empty()) evaluation::measureRawScan(setting, options.rawList, options.maxThreshold);
  findings.write();
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app("Measures a face cascade");
  Options options;
  addOptions(app, options);
  CLI11_PARSE(app, argc, argv);
  if (options.data.empty() && options.rawList.empty()) {
    std::fprintf(stderr, "nothing to measure: give --data or --raw\n");
    return 2;
  }
  return exitCodeOf("evaluate_detection", [&] { run(options); });
}
