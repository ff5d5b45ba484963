// Measures the search for facial points behind the face detection on faces that training leaves out.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include "api/vizl_api.h"
#include "detect/TIppiFaceDetector.h"
#include "features/facial_features.h"
#include "training/evaluation/detection.h"
#include "training/evaluation/drawing.h"
#include "training/evaluation/face_set.h"
#include "training/evaluation/face_views.h"
#include "training/evaluation/neuro_data.h"
#include "training/evaluation/point_errors.h"
#include "training/evaluation/processes.h"
#include "training/exit_code.h"

namespace {

using evaluation::FaceView;
using evaluation::FoundPoints;
using evaluation::PointTally;

constexpr double kFarOff = 0.10;  // mean error of the inner nodes, pupil distances

struct Options {
  std::string data;
  std::string networks;
  std::string eigenGrids;
  std::string csv;
  std::string pictures;
  std::string split = "val";
  std::vector<double> turns = {-20, -12, -4, 4, 12, 20};
  double smallWidth = 60;
  std::size_t limit = 0;
  unsigned jobs = 2;
  std::size_t shown = 30;
  bool plainOnly = false;
};

// The picture as it is, turned, or reduced.
struct Variant {
  std::string name;
  double turn = 0;   // degrees clockwise
  double width = 0;  // of the face, pixels; 0 leaves it
};

std::vector<Variant> variantsOf(const Options& options) {
  std::vector<Variant> variants = {{"plain"}};
  if (options.plainOnly) return variants;
  for (const double turn : options.turns) {
    char name[32];
    std::snprintf(name, sizeof name, "turn %+g", turn);
    variants.push_back({name, turn});
  }
  variants.push_back({"small", 0, options.smallWidth});
  return variants;
}

struct Outcome {
  bool detected = false;
  double milliseconds = 0;
  FoundPoints points;
};

void makeView(FaceView& view, const Variant& variant, FaceView& changed) {
  if (variant.turn != 0) return evaluation::turnView(view, variant.turn, changed);
  if (variant.width > 0 && evaluation::reduceView(view, variant.width, changed)) return;
  evaluation::copyView(view, changed);
}

Outcome search(TIppiFaceDetector& detector, FaceView& view) {
  Outcome outcome;
  outcome.points.truth = view.points;
  const auto face = evaluation::detectedFace(detector, view.picture, evaluation::squareOf(view.points));
  if (!face) return outcome;
  TPoint points[40];
  float confidences[40];
  const auto start = std::chrono::steady_clock::now();
  if (DetectFacialFeaturesInRegion(&view.picture, &*face, &points, &confidences, 0) != VIZLE_OK) return outcome;
  const std::chrono::duration<double, std::milli> spent = std::chrono::steady_clock::now() - start;
  outcome.detected = true;
  outcome.milliseconds = spent.count();
  for (std::size_t n = 0; n < 40; ++n) {
    outcome.points.found[n] = {static_cast<double>(points[n].x), static_cast<double>(points[n].y)};
    outcome.points.confidence[n] = confidences[n];
  }
  return outcome;
}

class Measurement {
 public:
  explicit Measurement(const Options& options) : options_(options), variants_(variantsOf(options)) {
    const auto labels = readFaceLabels(options.data + "/faces/labels.csv");
    const auto all = options.split == "dev" ? evaluation::choiceFaces(labels, "images/")
                                            : evaluation::validationFaces(labels, "images/");
    faces_ = evaluation::thinned(all, options.limit);
  }

  void run() {
    const auto bytes = evaluation::forEachIndexInProcesses(faces_.size(), options_.jobs,
                                                           [&](std::size_t i) { return outcomesOf(faces_[i]); });
    for (const std::string& row : bytes) outcomes_.push_back(evaluation::recordsOf<Outcome>(row));
  }

  void print() const {
    std::printf(
        "errors in %% of the pupil distance, mean over the found faces; far off: mean inner error above %g %%; "
        "by confidence: mean error of the worst and the best tenth of the points, and of the inner ones\n",
        100 * kFarOff);
    std::printf("%-24s %5s %6s  %7s %6s %7s %7s %8s  %15s  %15s\n", "", "faces", "missed", "pupils", "inner", "far off",
                "outline", "forehead", "by confidence", "inner ones");
    PointTally turned;
    std::size_t turnedMissed = 0;
    for (std::size_t v = 0; v < variants_.size(); ++v) {
      const PointTally tally = tallyOf(v);
      printRow(variants_[v].name, tally, faces_.size() - tally.faces());
      if (variants_[v].turn == 0) continue;
      turned.add(tally);
      turnedMissed += faces_.size() - tally.faces();
    }
    if (turned.faces() > 0) printRow("all turned", turned, turnedMissed);
    printSources();
    printNodes(tallyOf(0));
    printTime();
  }

  void writeTable() const {
    if (options_.csv.empty()) return;
    std::ofstream out(options_.csv);
    out << "file,source,variant,detected,pupils,inner,outline,forehead,milliseconds\n";
    for (std::size_t i = 0; i < faces_.size(); ++i) {
      for (std::size_t v = 0; v < variants_.size(); ++v) writeRow(out, i, v);
    }
    if (!out.flush()) throw std::runtime_error("cannot write " + options_.csv);
  }

  // The worst faces of the first variant, labels green and found points red.
  void savePictures() const {
    if (options_.pictures.empty()) return;
    std::filesystem::create_directories(options_.pictures);
    std::vector<std::pair<double, std::size_t>> worst;
    for (std::size_t i = 0; i < faces_.size(); ++i) {
      if (outcomes_[i][0].detected) worst.emplace_back(innerError(outcomes_[i][0]), i);
    }
    std::sort(worst.rbegin(), worst.rend());
    for (std::size_t k = 0; k < std::min(worst.size(), options_.shown); ++k) savePicture(k, worst[k].second);
  }

 private:
  static double innerError(const Outcome& outcome) {
    return evaluation::meanErrorOf(outcome.points, evaluation::kInnerNodes);
  }

  void loadFace(const FaceLabel& label, FaceView& view) const {
    evaluation::loadGray(options_.data + "/faces/" + label.file, view.picture);
    view.points = label.nodes;
  }

  std::string outcomesOf(const FaceLabel& label) {
    FaceView view;
    loadFace(label, view);
    std::vector<Outcome> outcomes;
    for (const Variant& variant : variants_) {
      FaceView changed;
      makeView(view, variant, changed);
      outcomes.push_back(search(detector_, changed));
    }
    return evaluation::bytesOf(outcomes);
  }

  PointTally tallyOf(std::size_t variant) const {
    PointTally tally;
    for (const auto& row : outcomes_) {
      if (row[variant].detected) tally.add(row[variant].points);
    }
    return tally;
  }

  static void printRow(const std::string& name, const PointTally& tally, std::size_t missed) {
    const auto percent = [&](const evaluation::NodeGroup& nodes) { return 100 * tally.meanError(nodes); };
    const auto all = tally.tenthsByConfidence(evaluation::kAllNodes);
    const auto inner = tally.tenthsByConfidence(evaluation::kInnerNodes);
    std::printf("%-24s %5zu %6zu  %7.2f %6.2f %7.2f %7.2f %8.2f  %7.2f %7.2f  %7.2f %7.2f\n", name.c_str(),
                tally.faces(), missed, percent(evaluation::kPupils), percent(evaluation::kInnerNodes),
                100 * tally.shareAbove(kFarOff, evaluation::kInnerNodes), percent(evaluation::kOutlineNodes),
                percent(evaluation::kForeheadNodes), 100 * all.worst, 100 * all.best, 100 * inner.worst,
                100 * inner.best);
  }

  void printSources() const {
    std::map<std::string, std::pair<PointTally, std::size_t>> sources;
    for (std::size_t i = 0; i < faces_.size(); ++i) {
      auto& [tally, missed] = sources[faces_[i].source];
      if (outcomes_[i][0].detected) {
        tally.add(outcomes_[i][0].points);
      } else {
        ++missed;
      }
    }
    std::printf("by source\n");
    for (const auto& [source, sum] : sources) printRow(source, sum.first, sum.second);
  }

  static void printNodes(const PointTally& tally) {
    std::printf("node: mean error, mean offset to the right and downwards, %%\n");
    for (std::size_t n = 0; n < 40; ++n) {
      const LabelledPoint offset = tally.meanOffset(n);
      std::printf("%4zu %6.2f  %+6.2f %+6.2f%s", n, 100 * tally.meanError({n}), 100 * offset.x, 100 * offset.y,
                  n % 4 == 3 ? "\n" : "   |");
    }
  }

  void printTime() const {
    double sum = 0;
    std::size_t count = 0;
    for (const auto& row : outcomes_) {
      for (const Outcome& outcome : row) {
        sum += outcome.milliseconds;
        count += outcome.detected ? 1 : 0;
      }
    }
    if (count > 0) std::printf("%.1f ms a search, on %u processes\n", sum / static_cast<double>(count), options_.jobs);
  }

  void writeRow(std::ofstream& out, std::size_t face, std::size_t variant) const {
    const Outcome& outcome = outcomes_[face][variant];
    out << faces_[face].file << ',' << faces_[face].source << ',' << variants_[variant].name << ',' << outcome.detected;
    for (const auto* nodes :
         {&evaluation::kPupils, &evaluation::kInnerNodes, &evaluation::kOutlineNodes, &evaluation::kForeheadNodes}) {
      out << ',';
      if (outcome.detected) out << evaluation::meanErrorOf(outcome.points, *nodes);
    }
    out << ',' << outcome.milliseconds << '\n';
  }

  // Brought to one size, so that small errors show.
  void savePicture(std::size_t rank, std::size_t face) const {
    constexpr double kShownWidth = 360;  // of the face, pixels
    FaceView view;
    loadFace(faces_[face], view);
    const FaceSquare square = evaluation::squareOf(view.points);
    TIppiImage part(imGray8), resized(imGray8), canvas;
    const int left = static_cast<int>(square.xc - 0.8 * square.w), top = static_cast<int>(square.yc - 0.9 * square.w);
    view.picture.CopyTo(part, left, top, left + static_cast<int>(1.6 * square.w),
                        top + static_cast<int>(1.7 * square.w));
    const double ratio = kShownWidth / square.w;
    part.Resize(resized, ratio);
    evaluation::colorCanvas(resized, canvas);
    const auto shown = [&](const LabelledPoint& p) { return LabelledPoint{(p.x - left) * ratio, (p.y - top) * ratio}; };
    const FoundPoints& points = outcomes_[face][0].points;
    for (std::size_t n = 0; n < 40; ++n) {
      const LabelledPoint truth = shown(points.truth[n]),
                          found = shown({points.found[n].x + 0.5, points.found[n].y + 0.5});
      evaluation::drawLine(canvas, truth, found, evaluation::kRed);
      evaluation::drawSquare(canvas, {truth.x, truth.y, 4, 0}, evaluation::kGreen);
      evaluation::drawSquare(canvas, {found.x, found.y, 4, 0}, evaluation::kRed);
    }
    char name[400];
    std::snprintf(name, sizeof name, "%s/%02zu_%.1f_%s.jpg", options_.pictures.c_str(), rank + 1,
                  100 * innerError(outcomes_[face][0]),
                  std::filesystem::path(faces_[face].file).stem().string().substr(0, 80).c_str());
    if (canvas.SaveToJpegFile(name, 0) != 0) throw std::runtime_error(std::string("cannot write ") + name);
  }

  const Options& options_;
  std::vector<Variant> variants_;
  TIppiFaceDetector detector_;
  std::vector<FaceLabel> faces_;
  std::vector<std::vector<Outcome>> outcomes_;
};

void run(const Options& options) {
  VIZL_Initialize(nullptr);
  const evaluation::LocatorData data(options.networks, options.eigenGrids);
  evaluation::searchWith(data);
  Measurement measurement(options);
  measurement.run();
  measurement.print();
  measurement.writeTable();
  measurement.savePictures();
  VIZL_Finalize();
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app("Measures the search for facial points");
  Options options;
  app.add_option("--data", options.data, "folder with faces/")->required()->check(CLI::ExistingDirectory);
  app.add_option("--networks", options.networks, "networks; those in the library if left out")
      ->check(CLI::ExistingFile);
  app.add_option("--eigengrids", options.eigenGrids, "deformations; those in the library if left out")
      ->check(CLI::ExistingFile);
  app.add_option("--split", options.split, "val, or dev: people of the train split kept for choices")
      ->check(CLI::IsMember({"val", "dev"}))
      ->capture_default_str();
  app.add_option("--turns", options.turns, "degrees by which the pictures are turned")->delimiter(',');
  app.add_option("--small", options.smallWidth, "width of the reduced faces, pixels")->capture_default_str();
  app.add_flag("--plain", options.plainOnly, "neither turned nor reduced faces");
  app.add_option("--max", options.limit, "at most so many faces (0: all)");
  app.add_option("--jobs", options.jobs, "processes")->check(CLI::Range(1, 256))->capture_default_str();
  app.add_option("--csv", options.csv, "table of all results");
  app.add_option("--pictures", options.pictures, "folder for pictures of the worst faces");
  app.add_option("--shown", options.shown, "so many pictures")->capture_default_str();
  CLI11_PARSE(app, argc, argv);
  return exitCodeOf("evaluate_features", [&] { run(options); });
}
