// Measures the eye search behind the face detection on the faces that training leaves out.
#include <CLI/CLI.hpp>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "api/vizl_api.h"
#include "detect/TIppiFaceDetector.h"
#include "eyes/detect_eyes.h"
#include "eyes/eye_model.h"
#include "image/TIppiImage.h"
#include "training/evaluation/detection.h"
#include "training/evaluation/drawing.h"
#include "training/evaluation/eye_errors.h"
#include "training/evaluation/face_set.h"
#include "training/evaluation/face_views.h"
#include "training/evaluation/parallel.h"
#include "training/evaluation/turning.h"
#include "training/exit_code.h"

namespace {

using evaluation::Eyes;
using evaluation::EyeTally;

struct Options {
  std::string data;
  std::string model;
  std::string csv;
  std::string pictures;
  double shownFrom = 0.10;
  std::size_t limit = 0;
  unsigned threads = 2;
  std::string folder = "images/";
  std::vector<double> turns = {0, -10, -7, -4, 4, 7, 10};
};

struct Truth {
  std::string file;
  std::string source;
  FaceSquare square;
  Eyes eyes;
};

class Measurement {
 public:
  explicit Measurement(const Options& options) : options_(options) {}

  void measure(const Truth& truth, TIppiImage& gray, std::size_t turn) {
    const double degrees = options_.turns[turn];
    const LabelledPoint centre = {truth.square.xc, truth.square.yc};
    TIppiImage turned;
    if (degrees != 0) evaluation::turnPicture(gray, degrees, centre.x, centre.y, turned);
    TIppiImage& picture = degrees != 0 ? turned : gray;
    const auto face = evaluation::detectedFace(detector_, picture, evaluation::turnedSquare(truth.square, degrees));
    if (!face) return;
    TPoint points[2];
    if (DetectEyesInRegion(&picture, &*face, points) != VIZLE_OK) return;
    const auto found = [&](int i) { return LabelledPoint{double(points[i].x), double(points[i].y)}; };
    add(truth, turn, evaluation::turnedEyes(truth.eyes, centre, degrees), {found(0), found(1)}, *face, picture);
  }

  void print(std::size_t faces) const {
    std::printf("turn  faces of %zu  within 5 %%  10 %%  25 %%  mean %%  offset of eye 0 (x, y), eye 1 (x, y) %%\n",
                faces);
    EyeTally turned;
    for (std::size_t i = 0; i < options_.turns.size(); ++i) {
      char name[16];
      std::snprintf(name, sizeof name, "%+g", options_.turns[i]);
      printRow(name, tallies_[i]);
      if (options_.turns[i] != 0) turned.add(tallies_[i]);
    }
    if (turned.faces() > 0) printRow("all turned", turned);
    for (const auto& [source, tally] : bySource_) printRow(source.c_str(), tally);
  }

 private:
  static void printRow(const char* name, const EyeTally& tally) {
    const LabelledPoint first = tally.meanOffset(0), second = tally.meanOffset(1);
    std::printf("%-10s  %5zu  %6.2f  %6.2f  %6.2f  %6.2f  %+6.2f %+6.2f  %+6.2f %+6.2f\n", name, tally.faces(),
                100 * tally.within(0.05), 100 * tally.within(0.10), 100 * tally.within(0.25),
                100 * tally.meanDistance(), 100 * first.x, 100 * first.y, 100 * second.x, 100 * second.y);
  }

  void add(const Truth& truth, std::size_t turn, const Eyes& eyes, const Eyes& found, const TFacePosition& face,
           TIppiImage& picture) {
    const evaluation::EyeError error = evaluation::eyeErrorOf(eyes, found);
    const std::lock_guard lock(guard_);
    tallies_[turn].add(error);
    if (options_.turns[turn] == 0) bySource_[truth.source].add(error);
    if (error.worse >= options_.shownFrom)
      show(truth.file, options_.turns[turn], error.worse, eyes, found, face, picture);
  }

  void show(const std::string& file, double degrees, double worse, const Eyes& eyes, const Eyes& found,
            const TFacePosition& face, TIppiImage& picture) const {
    if (!options_.csv.empty()) {
      std::ofstream(options_.csv, std::ios::app) << file << ',' << degrees << ',' << worse << '\n';
    }
    if (options_.pictures.empty()) return;
    TIppiImage canvas;
    evaluation::colorCanvas(picture, canvas);
    for (std::size_t i = 0; i < 2; ++i) {
      evaluation::drawSquare(canvas, {eyes[i].x, eyes[i].y, 4, 0}, evaluation::kGreen);
      evaluation::drawSquare(canvas, {found[i].x, found[i].y, 4, 0}, evaluation::kRed);
    }
    TIppiImage part;
    const int reach = face.w * 6 / 10;
    canvas.CopyTo(part, face.xc - reach, face.yc - reach, face.xc + reach, face.yc + reach);
    char name[300];
    std::snprintf(name, sizeof name, "%s/%03d_%s_%+g.jpg", options_.pictures.c_str(), static_cast<int>(worse * 100),
                  std::filesystem::path(file).stem().c_str(), degrees);
    part.SaveToJpegFile(name, 0);
  }

  const Options& options_;
  TIppiFaceDetector detector_;
  std::mutex guard_;
  std::vector<EyeTally> tallies_ = std::vector<EyeTally>(options_.turns.size());
  std::map<std::string, EyeTally> bySource_;
};

void useModel(const std::string& file) {
  std::ifstream in(file, std::ios::binary);
  const std::vector<char> bytes{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
  eyeFeature model;
  if (bytes.size() != kEyeModelHeader + sizeof model) throw std::runtime_error("no eye model: " + file);
  std::memcpy(&model, bytes.data() + kEyeModelHeader, sizeof model);
  UseEyeModel(model);
}

void run(const Options& options) {
  VIZL_Initialize(nullptr);
  if (!options.model.empty()) useModel(options.model);
  if (!options.pictures.empty()) std::filesystem::create_directories(options.pictures);
  const auto labels = readFaceLabels(options.data + "/faces/labels.csv");
  const auto faces = evaluation::thinned(evaluation::validationFaces(labels, options.folder), options.limit);
  Measurement measurement(options);
  evaluation::forEachIndex(faces.size(), options.threads, [&](std::size_t i) {
    const FaceLabel& label = faces[i];
    TIppiImage gray;
    evaluation::loadGray(options.data + "/faces/" + label.file, gray);
    const Truth truth = {label.file, label.source, faceSquare(label), {label.nodes[0], label.nodes[1]}};
    for (std::size_t turn = 0; turn < options.turns.size(); ++turn) measurement.measure(truth, gray, turn);
  });
  measurement.print(faces.size());
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app("Measures the eye search");
  Options options;
  app.add_option("--data", options.data, "folder with faces/")->required()->check(CLI::ExistingDirectory);
  app.add_option("--model", options.model, "eye model; the one in the library if left out")->check(CLI::ExistingFile);
  app.add_option("--folder", options.folder, "images/ or lowres/")->capture_default_str();
  app.add_option("--turns", options.turns, "degrees by which the pictures are turned")->delimiter(',');
  app.add_option("--max", options.limit, "at most so many pictures (0: all)");
  app.add_option("--threads", options.threads)->check(CLI::Range(1, 256))->capture_default_str();
  app.add_option("--csv", options.csv, "table of the worst faces, appended to");
  app.add_option("--pictures", options.pictures, "folder for pictures of the worst faces");
  app.add_option("--shown-from", options.shownFrom, "error from which a face is listed")->capture_default_str();
  CLI11_PARSE(app, argc, argv);
  return exitCodeOf("evaluate_eyes", [&] { run(options); });
}
