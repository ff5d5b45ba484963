// Trains the face cascade, models/class_dat.bin, stage by stage. A run that is stopped goes on from the stages in its
// output file. The seed fixes every random choice; the number of threads changes nothing.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <stdexcept>
#include <thread>

#include "training/boosting.h"
#include "training/cascade_stream.h"
#include "training/exit_code.h"
#include "training/first_stage.h"
#include "training/negative_miner.h"
#include "training/scan_windows.h"
#include "training/training_set.h"

namespace {

// Classifiers, rectangles and threshold of each stage of the stream.
struct StageForm {
  int classifiers;
  int rectangles;
  float threshold;
};

constexpr StageForm kStages[] = {
    {3, 6, 0.82268941f},  {16, 33, 6.957f},     {21, 46, 9.499f},    {39, 83, 18.413f},   {33, 70, 15.324f},
    {44, 95, 21.011f},    {50, 106, 23.919f},   {51, 112, 24.528f},  {56, 121, 27.153f},  {71, 152, 34.554f},
    {80, 169, 39.107f},   {103, 220, 50.610f},  {111, 238, 54.620f}, {102, 219, 50.170f}, {135, 294, 66.669f},
    {137, 300, 67.699f},  {140, 302, 69.230f},  {160, 357, 79.249f}, {177, 387, 87.696f}, {182, 398, 90.253f},
    {211, 466, 104.749f}, {213, 456, 105.761f},
};

// The first two classifiers of the first stage are given.
const std::vector<WeakClassifier> kFirstClassifiers = {
    {{{3, 7, 14, 4, -1.0f}, {3, 9, 14, 2, 2.0f}}, 0.0040142f, 0.0337942f, 0.8378107f},
    {{{1, 2, 18, 4, -1.0f}, {7, 2, 6, 4, 3.0f}}, 0.0151513f, 0.1514132f, 0.7488812f},
};

struct Options {
  std::string data;
  std::string output = "class_dat.bin";
  std::uint32_t seed = 1;
  unsigned threads = std::max(1u, std::thread::hardware_concurrency());
  int copies = 8;
  std::size_t negatives = 26000;
  std::size_t candidates = 12000;
  std::size_t maxScans = 30000;
  // Shares of the faces that stages pass: falling evenly from the second stage to the last, since a face lost late
  // takes more false ones with it. Three classifiers can reject little at such a rate, so the first stage has its own.
  double firstKeep = 0.997;
  double keep = 0.9993;
  double lastKeep = 0.9980;
  FaceJitter jitter;
};

double seconds() {
  using namespace std::chrono;
  return duration<double>(steady_clock::now().time_since_epoch()).count();
}

// Keeps the windows that pass the cascade from `firstStage` on.
void keepPassing(const Cascade& cascade, int firstStage, std::vector<Window>& windows) {
  const std::vector<unsigned char> stream = cascadeToStream(cascade);
  const TIppiFaceDetector detector(stream.data(), static_cast<unsigned>(stream.size()));
  WindowScanner scanner(detector);
  std::erase_if(windows, [&](const Window& window) { return !scanner.passes(window, firstStage); });
}

class Training {
 public:
  explicit Training(const Options& options)
      : options_(options), features_(allCandidateFeatures(12)), table_(features_) {
    backgrounds_ = loadBackgrounds(options.data + "/background");
    portraits_ = loadPortraits(options.data + "/faces");
    positives_ = makePositives(portraits_, options.jitter, options.copies, options.seed, options.threads);
    std::printf("%zu backgrounds, %zu portraits, %zu face windows, %zu features\n", backgrounds_.size(),
                portraits_.size(), positives_.size(), features_.size());
    if (std::filesystem::exists(options.output)) {
      cascade_ = cascadeFromStream(readFile(options.output));
      keepPassing(cascade_, 0, positives_);
      std::printf("going on at stage %zu with %zu face windows\n", cascade_.size(), positives_.size());
    }
  }

  void run() {
    while (cascade_.size() < std::size(kStages)) {
      trainStage(static_cast<int>(cascade_.size()));
      writeFile(options_.output, cascadeToStream(cascade_));
      std::fflush(stdout);
    }
  }

 private:
  void topUpNegatives(int stage) {
    if (negatives_.size() >= options_.negatives) return;
    MiningPlan plan;
    plan.wanted = options_.negatives - negatives_.size();
    plan.maxScans = options_.maxScans;
    plan.seed = options_.seed * 7919u + static_cast<std::uint32_t>(stage);
    plan.threads = options_.threads;
    // Before the first stage every window counts as a face: a stage that nothing fails.
    const Cascade open = {{-1e9f, {kFirstClassifiers[0]}}};
    const std::vector<unsigned char> stream = cascadeToStream(cascade_.empty() ? open : cascade_);
    const TIppiFaceDetector detector(stream.data(), static_cast<unsigned>(stream.size()));
    const std::vector<Window> mined = mineNegatives(detector, backgrounds_, portraits_, plan, scans_);
    negatives_.insert(negatives_.end(), mined.begin(), mined.end());
  }

  double keepAt(int index) const {
    if (index == 0) return options_.firstKeep;
    const double done = (index - 1) / static_cast<double>(std::size(kStages) - 2);
    return options_.keep + (options_.lastKeep - options_.keep) * done;
  }

  Stage boostStage(int index, const StagePlan& plan) {
    if (index == 0) {
      return trainFirstStage(features_, table_, positives_.size(), plan, kFirstClassifiers, options_.threads);
    }
    const std::uint32_t seed = options_.seed * 104729u + static_cast<std::uint32_t>(index);
    return Booster(features_, table_, positives_.size(), options_.candidates, seed, options_.threads).train(plan);
  }

  void trainStage(int index) {
    const double start = seconds();
    topUpNegatives(index);
    const double mined = seconds();
    std::vector<Window> windows(positives_);
    windows.insert(windows.end(), negatives_.begin(), negatives_.end());
    table_.fill(windows, options_.threads);
    const double tabled = seconds();

    const StageForm& form = kStages[index];
    const StagePlan plan{form.classifiers, form.rectangles - 2 * form.classifiers, form.threshold, keepAt(index)};
    cascade_.push_back(boostStage(index, plan));

    const std::size_t hadPositives = positives_.size();
    const std::size_t hadNegatives = negatives_.size();
    keepPassing(cascade_, index, positives_);
    keepPassing(cascade_, index, negatives_);
    std::printf(
        "stage %2d: %zu of %zu faces pass, %zu of %zu others (%.4f); %zu scans; mining %.0f s, table %.0f s, "
        "boosting %.0f s\n",
        index, positives_.size(), hadPositives, negatives_.size(), hadNegatives,
        static_cast<double>(negatives_.size()) / static_cast<double>(hadNegatives), scans_, mined - start,
        tabled - mined, seconds() - tabled);
  }

  Options options_;
  std::vector<CandidateFeature> features_;
  FeatureTable table_;
  std::vector<TrainingPicture> backgrounds_;
  std::vector<TrainingPicture> portraits_;
  std::vector<Window> positives_;
  std::vector<Window> negatives_;
  Cascade cascade_;
  std::size_t scans_ = 0;
};

}  // namespace

int main(int argc, char** argv) {
  Options options;
  CLI::App app{"Trains the face cascade"};
  app.add_option("--data", options.data, "folder with faces/ and background/")->required();
  app.add_option("--output", options.output, "cascade stream; an existing one is gone on with")->capture_default_str();
  app.add_option("--seed", options.seed)->capture_default_str();
  app.add_option("--threads", options.threads)->capture_default_str();
  app.add_option("--copies", options.copies, "jittered windows of each face")->capture_default_str();
  app.add_option("--negatives", options.negatives, "windows without a face per stage")->capture_default_str();
  app.add_option("--candidates", options.candidates, "features drawn each round")->capture_default_str();
  app.add_option("--max-scans", options.maxScans, "scans per stage before mining gives up")->capture_default_str();
  app.add_option("--first-keep", options.firstKeep, "share of the faces that the first stage passes")
      ->capture_default_str();
  app.add_option("--keep", options.keep, "the same for the second stage")->capture_default_str();
  app.add_option("--last-keep", options.lastKeep, "the same for the last stage")->capture_default_str();
  app.add_option("--scale", options.jitter.logScale, "natural log of the size, +-")->capture_default_str();
  app.add_option("--shift", options.jitter.shift, "pixels of the window, +-")->capture_default_str();
  app.add_option("--shift-right", options.jitter.shiftRight, "of the window against the face, widths")
      ->capture_default_str();
  app.add_option("--shift-down", options.jitter.shiftDown, "of the window against the face, widths")
      ->capture_default_str();
  app.add_option("--turn-mean", options.jitter.turnMean, "degrees clockwise")->capture_default_str();
  app.add_option("--turn-deviation", options.jitter.turnDeviation, "degrees")->capture_default_str();
  app.add_option("--turn-limit", options.jitter.turnLimit, "degrees")->capture_default_str();
  CLI11_PARSE(app, argc, argv);
  return exitCodeOf("train_cascade", [&] { Training(options).run(); });
}
