// Trains the search for facial points: the rows of its shape model, models/eigengrids.bin, and the networks of the
// nodes, models/neuro_dat.bin. The seed fixes every random choice; the number of threads changes nothing.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <numeric>
#include <random>

#include "primitives/ippi.h"
#include "training/evaluation/face_set.h"
#include "training/evaluation/neuro_data.h"
#include "training/exit_code.h"
#include "training/features/forehead_labels.h"
#include "training/features/frame_collector.h"
#include "training/features/grid_trainer.h"
#include "training/features/manifest_line.h"
#include "training/features/network_file.h"
#include "training/features/node_trainer.h"
#include "training/features/search_round.h"
#include "training/features/shape_rows.h"

namespace {

struct Options {
  std::string data;
  std::string frames;
  std::string networks = "neuro_dat.bin";
  std::string eigenGrids = "eigengrids.bin";
  std::string shifts;
  std::string start;
  std::string startEigenGrids;
  std::string startShifts;
  bool shapeOnly = false;
  std::size_t limit = 0;
  CollectorOptions collector;
  TrainerOptions first;

  int rounds = 4;
  int roundEpochs = 3;
  int roundOffsets = 8;
  double roundRate = 8e-4;
  std::size_t searched = 3000;
  std::vector<int> searchedKinds = {0, 1, 2, 3};
  SearchOptions search;
  bool forgetGrids = false;
  GridTrainerOptions grids;
  int gridRounds = 13;
  int gridPasses = 14;
  std::size_t gridSearched = 2000;
  std::vector<int> gridSearchedKinds = {0, 1, 2, 3};
  double gridShiftShare = 0.2;
  double shiftShare = 0.8;
  // What the way back takes off on average, pixels of the frame: 0.43 are half a pixel of the image, since results are
  // truncated; the rest was measured in the pictures of people kept out.
  double truncation = 0.70;
  std::size_t checked = 150;
};

double seconds() {
  using namespace std::chrono;
  return duration<double>(steady_clock::now().time_since_epoch()).count();
}

template <typename T>
std::vector<unsigned char> bytesFrom(const std::vector<T>& values) {
  const auto* const first = reinterpret_cast<const unsigned char*>(values.data());
  return {first, first + values.size() * sizeof(T)};
}

class Training {
 public:
  explicit Training(const Options& options) : options_(options) {}

  void run(const std::string& command) {
    loadFrames();
    makeShapeRows();
    if (options_.shapeOnly) return;
    prepare();
    if (options_.start.empty()) trainFirst();
    for (int round = 0; round < options_.rounds; ++round) runRound(round);
    trainGrids();
    check();
    const auto stream = networksToStream(networks_);
    std::printf("%s\n%s\n", manifestLine("eigengrids.bin", bytesFrom(eigenGrids_), command).c_str(),
                manifestLine("neuro_dat.bin", stream, command).c_str());
  }

 private:
  void loadFrames() {
    const double start = seconds();
    if (!options_.frames.empty() && std::filesystem::exists(options_.frames)) {
      frames_ = readFeatureFrames(options_.frames);
    } else {
      auto faces = readFaceLabels(options_.data + "/faces/labels.csv");
      std::erase_if(faces, [](const FaceLabel& l) { return l.validation || !l.file.starts_with("images/"); });
      frames_ = collectFrames(options_.data + "/faces", evaluation::thinned(faces, options_.limit), options_.collector);
      if (!options_.frames.empty()) writeFeatureFrames(options_.frames, frames_);
    }
    for (std::size_t i = 0; i < frames_.size(); ++i) {
      if (!frames_[i].choice) {
        trained_.push_back(i);
      } else if (frames_[i].kind == FrameKind::Detected && !frames_[i].mirrored) {
        checked_.push_back(i);
      }
    }
    checked_ = evaluation::thinned(checked_, options_.checked);
    std::printf("%zu frames, %zu to train on; %.0f s\n", frames_.size(), trained_.size(), seconds() - start);
  }

  std::vector<Shape> alignedShapes() const {
    std::vector<Shape> shapes;
    for (const std::size_t i : trained_) {
      if (frames_[i].kind != FrameKind::Detected) continue;
      Shape shape;
      std::copy(frames_[i].points.begin(), frames_[i].points.end(), shape.begin());
      shapes.push_back(alignedToMean(shape));
      tieForehead(shapes.back());
    }
    return shapes;
  }

  void makeShapeRows() {
    const std::vector<Shape> shapes = alignedShapes();
    if (!options_.startEigenGrids.empty()) {
      const auto bytes = evaluation::readBytes(options_.startEigenGrids);
      eigenGrids_.resize(kDeformations * kCoordinates);
      if (bytes.size() != eigenGrids_.size() * sizeof(float)) throw std::runtime_error("no deformations");
      std::memcpy(eigenGrids_.data(), bytes.data(), bytes.size());
    } else {
      const auto rows = chooseShapeRows(shapes);
      printShapeRows(rows, shapes);
      eigenGrids_ = eigenGridsOf(rows);
    }
    spreads_ = spreadsAlong(eigenGrids_, shapes);
    writeBytes(options_.eigenGrids, eigenGrids_.data(), eigenGrids_.size() * sizeof(float));
  }

  void prepare() {
    set_.frames = preparePatchFrames(frames_, trained_, options_.first.threads);
    set_.grids.resize(set_.frames.size());
    if (!options_.startShifts.empty()) set_.shifts = readShifts(options_.startShifts);
    networks_ = options_.start.empty() ? randomNetworks(options_.first.seed)
                                       : networksFromStream(evaluation::readBytes(options_.start));
  }

  void train(const TrainerOptions& options) {
    const double start = seconds();
    const auto losses = trainNodes(set_, options, networks_);
    double sum = 0;
    for (const double loss : losses) sum += loss;
    std::printf("  trained: mean squared error %.4f; %.0f s\n", sum / static_cast<double>(losses.size()),
                seconds() - start);
    save();
  }

  void trainFirst() {
    std::printf("first training\n");
    train(options_.first);
  }

  // Searched frames differ from round to round.
  std::vector<std::size_t> drawSearched(int round, std::size_t count, const std::vector<int>& kinds) const {
    std::vector<std::size_t> places(trained_.size());
    std::iota(places.begin(), places.end(), std::size_t{0});
    std::erase_if(places, [&](std::size_t p) {
      const int kind = static_cast<int>(frames_[trained_[p]].kind);
      return std::count(kinds.begin(), kinds.end(), kind) == 0;
    });
    std::mt19937 random(options_.search.seed * 65537u + static_cast<unsigned>(round));
    std::shuffle(places.begin(), places.end(), random);
    places.resize(std::min(places.size(), count));
    return places;
  }

  // Searches these of the trained frames and moves the label shifts.
  std::vector<SearchedFrame> searchAndShift(const std::vector<std::size_t>& places, const SearchOptions& search,
                                            double shiftShare) {
    const double start = seconds();
    std::vector<std::size_t> chosen;
    for (const std::size_t p : places) chosen.push_back(trained_[p]);
    auto searched = searchFrames(frames_, chosen, networks_, eigenGrids_, search);
    const auto errors = meanErrorsOf(frames_, chosen, searched);
    correctShifts(set_.shifts, errors, shiftShare, options_.truncation);
    std::printf("  searched %zu frames: inner error %.2f %%, offset of the inner nodes %.2f pixels; %.0f s\n",
                chosen.size(), 100 * innerErrorOf(frames_, chosen, searched, options_.truncation), innerOffset(errors),
                seconds() - start);
    return searched;
  }

  void runRound(int round) {
    std::printf("round %d\n", round + 1);
    check();
    const std::vector<std::size_t> places = drawSearched(round, options_.searched, options_.searchedKinds);
    const auto searched = searchAndShift(places, options_.search, options_.shiftShare);
    if (options_.forgetGrids) set_.grids.assign(set_.frames.size(), {});
    for (std::size_t i = 0; i < places.size(); ++i) {
      auto& grids = set_.grids[places[i]] = searched[i].others;
      grids.push_back(searched[i].best);
      grids.push_back(searched[i].result);
    }
    train(roundOptions(round));
  }

  // Rounds in which all networks learn together. A frame keeps the grids of the last searches that met it: networks
  // which forget an old mistake would make it again.
  void trainGrids() {
    if (options_.gridRounds == 0) return;
    set_.grids.assign(set_.frames.size(), {});
    const GridCandidates candidates(eigenGrids_, spreads_, options_.grids.candidates);
    const std::size_t visits = options_.gridSearched * static_cast<std::size_t>(options_.gridPasses);
    const std::size_t steps = visits / options_.grids.batch * static_cast<std::size_t>(options_.gridRounds);
    GridTrainer trainer(set_, candidates, options_.first, options_.grids, steps, networks_);
    std::mt19937 random(options_.first.seed * 8191u);
    std::vector<std::size_t> met;  // frames that have been searched, once for each time
    for (int round = 0; round < options_.gridRounds; ++round) {
      std::printf("round %d of all networks together\n", round + 1);
      check();
      const auto places = drawSearched(options_.rounds + round, options_.gridSearched, options_.gridSearchedKinds);
      if (places.empty()) throw std::runtime_error("no frames of these kinds to search");
      searchForGrids(places);
      met.insert(met.end(), places.begin(), places.end());
      trainOnGrids(trainer, places, met, visits, random);
    }
  }

  void searchForGrids(const std::vector<std::size_t>& places) {
    constexpr std::size_t kKept = 6;  // grids of a frame, two of each search
    SearchOptions search = options_.search;
    search.samples = 0;
    const auto searched = searchAndShift(places, search, options_.gridShiftShare);
    for (std::size_t i = 0; i < places.size(); ++i) {
      auto& grids = set_.grids[places[i]];
      if (grids.size() == kKept) grids.erase(grids.begin(), grids.begin() + 2);
      grids.push_back(searched[i].best);
      grids.push_back(searched[i].result);
    }
  }

  // The frames just searched once each, then any that were.
  void trainOnGrids(GridTrainer& trainer, std::vector<std::size_t> places, const std::vector<std::size_t>& met,
                    std::size_t visits, std::mt19937& random) {
    const double start = seconds();
    std::shuffle(places.begin(), places.end(), random);
    while (places.size() < visits) places.push_back(met[random() % met.size()]);
    const GridLosses losses = trainer.train(places);
    std::printf("  trained: risk %.3f %%, of the last steps %.3f %%, mean squared error %.4f; %.0f s\n", losses.risk,
                losses.steps, losses.squares, seconds() - start);
    save();
  }

  // A round's training differs from the first one in its length alone.
  TrainerOptions roundOptions(int round) const {
    TrainerOptions options = options_.first;
    options.epochs = options_.roundEpochs;
    options.offsets = options_.roundOffsets;
    options.rate = options_.roundRate;
    options.seed += static_cast<unsigned>(round) + 1;
    return options;
  }

  // Root of the mean square of the inner nodes' mean errors, less what truncation takes off.
  double innerOffset(const std::array<double, 80>& errors) const {
    double sum = 0;
    for (const std::size_t n : evaluation::kInnerNodes) {
      sum += std::pow(errors[2 * n] - options_.truncation, 2) + std::pow(errors[2 * n + 1] - options_.truncation, 2);
    }
    return std::sqrt(sum / static_cast<double>(evaluation::kInnerNodes.size()));
  }

  void check() const {
    if (checked_.empty()) return;
    SearchOptions search = options_.search;
    search.samples = 0;
    const auto searched = searchFrames(frames_, checked_, networks_, eigenGrids_, search);
    std::printf("  inner error on %zu frames of people kept out: %.2f %%\n", checked_.size(),
                100 * innerErrorOf(frames_, checked_, searched, options_.truncation));
  }

  void save() const {
    const auto stream = networksToStream(networks_);
    writeBytes(options_.networks, stream.data(), stream.size());
    if (!options_.shifts.empty()) writeShifts(options_.shifts, set_.shifts);
  }

  const Options& options_;
  std::vector<FeatureFrame> frames_;
  std::vector<std::size_t> trained_;  // indices of frames
  std::vector<std::size_t> checked_;
  TrainingSet set_;  // of the trained frames
  std::vector<float> eigenGrids_;
  std::vector<double> spreads_;  // of the faces along these rows
  std::vector<NodeNetwork> networks_;
};

void addFrameOptions(CLI::App& app, CollectorOptions& options) {
  app.add_option("--kinds", options.kinds, "0 detected, 1 jittered, 2 turned, 3 reduced")->delimiter(',');
  app.add_option("--jitter-shift", options.jitter.shift, "s.d. of the centre, widths")->capture_default_str();
  app.add_option("--jitter-shift-limit", options.jitter.shiftLimit)->capture_default_str();
  app.add_option("--jitter-width", options.jitter.width, "mean width, widths")->capture_default_str();
  app.add_option("--jitter-scale", options.jitter.scale, "s.d. of the width, widths")->capture_default_str();
  app.add_option("--jitter-scale-limit", options.jitter.scaleLimit)->capture_default_str();
  app.add_option("--jitter-turn", options.jitter.turn, "s.d. of the angle, degrees")->capture_default_str();
  app.add_option("--jitter-turn-limit", options.jitter.turnLimit)->capture_default_str();
  app.add_option("--max-turn", options.maxTurn, "of turned pictures, degrees")->capture_default_str();
  app.add_option("--smallest-width", options.smallestWidth, "of reduced faces, pixels")->capture_default_str();
  app.add_option("--largest-width", options.largestWidth, "of reduced faces, pixels")->capture_default_str();
}

void addGridOptions(CLI::App& app, Options& options) {
  GridTrainerOptions& grids = options.grids;
  app.add_option("--grid-rounds", options.gridRounds, "rounds of all networks together")->capture_default_str();
  app.add_option("--grid-passes", options.gridPasses, "frames trained for each one searched")->capture_default_str();
  app.add_option("--grid-searched", options.gridSearched, "frames a round")->capture_default_str();
  app.add_option("--grid-searched-kinds", options.gridSearchedKinds)->delimiter(',');
  app.add_option("--grid-shift-share", options.gridShiftShare)->capture_default_str();
  app.add_option("--grid-rate", grids.rate)->capture_default_str();
  app.add_option("--sharpness", grids.sharpness, "of the choice between grids")->capture_default_str();
  app.add_option("--step-weight", grids.stepWeight, "of the last steps of single nodes")->capture_default_str();
  app.add_option("--step-sharpness", grids.stepSharpness)->capture_default_str();
  app.add_option("--squares-weight", grids.squaresWeight, "of the errors of single networks")->capture_default_str();
  app.add_option("--pupil-weight", grids.pupilWeight, "in the error of a grid")->capture_default_str();
  app.add_option("--outline-weight", grids.outlineWeight)->capture_default_str();
  app.add_option("--bent", grids.candidates.bent, "candidates round the labels")->capture_default_str();
  app.add_option("--between", grids.candidates.between, "candidates on the way to searched grids")
      ->capture_default_str();
}

void addTrainingOptions(CLI::App& app, Options& options) {
  TrainerOptions& first = options.first;
  app.add_option("--first-epochs", first.epochs)->capture_default_str();
  app.add_option("--first-offsets", first.offsets, "patches a frame, node and epoch")->capture_default_str();
  app.add_option("--first-rate", first.rate)->capture_default_str();
  app.add_option("--epochs", options.roundEpochs, "of a round")->capture_default_str();
  app.add_option("--offsets", options.roundOffsets)->capture_default_str();
  app.add_option("--rate", options.roundRate)->capture_default_str();
  app.add_option("--decay", first.decay, "of the input weights")->capture_default_str();
  app.add_option("--warm-up", first.warmUp, "share of the steps")->capture_default_str();
  app.add_option("--near", first.near, "s.d. of close offsets, pixels")->capture_default_str();
  app.add_option("--near-share", first.nearShare)->capture_default_str();
  app.add_option("--middle", first.middle, "reach of middle offsets, pixels")->capture_default_str();
  app.add_option("--middle-share", first.middleShare)->capture_default_str();
  app.add_option("--far", first.far, "reach of the other offsets, pixels")->capture_default_str();
  app.add_option("--mined-share", first.minedShare, "of the patches of searched frames")->capture_default_str();
  app.add_option("--mined-near", first.minedNear, "s.d. round searched places, pixels")->capture_default_str();
  const auto bells = [&app](const char* name, TargetBells& target, const char* what) {
    app.add_option_function<std::string>(
        name, [&target](const std::string& text) { target = parseBells(text); }, what);
  };
  bells("--inner-target", first.targets.inner, "AMPLITUDE:DEVIATION,... in pixels; 1:2.8 if left out");
  bells("--outline-target", first.targets.outline, "1:4.5 if left out");
  bells("--forehead-target", first.targets.forehead, "0.2:10 if left out");
}

void setSeedAndThreads(Options& options, unsigned seed, unsigned threads) {
  options.first.seed = options.collector.seed = options.search.seed = seed;
  options.first.threads = options.collector.threads = options.search.processes = threads;
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app("Trains the search for facial points");
  Options options;
  unsigned seed = 1, threads = 2;
  app.add_option("--data", options.data, "folder with faces/")->required()->check(CLI::ExistingDirectory);
  app.add_option("--frames", options.frames, "file of frames, made unless it exists; it fixes all options of frames");
  app.add_option("--output", options.networks, "networks")->capture_default_str();
  app.add_option("--eigengrids", options.eigenGrids, "rows of the shape model")->capture_default_str();
  app.add_option("--shifts", options.shifts, "label shifts, written beside the networks");
  app.add_option("--start", options.start, "networks to go on from")->check(CLI::ExistingFile);
  app.add_option("--start-eigengrids", options.startEigenGrids, "rows to take")->check(CLI::ExistingFile);
  app.add_option("--start-shifts", options.startShifts)->check(CLI::ExistingFile);
  app.add_flag("--shape-only", options.shapeOnly, "stop after the shape model");
  app.add_option("--max", options.limit, "at most so many faces (0: all)");
  app.add_option("--seed", seed)->capture_default_str();
  app.add_option("--threads", threads)->check(CLI::Range(1, 256))->capture_default_str();
  app.add_option("--rounds", options.rounds, "searches followed by a training")->capture_default_str();
  app.add_option("--searched", options.searched, "frames a round")->capture_default_str();
  app.add_option("--searched-kinds", options.searchedKinds)->delimiter(',');
  app.add_option("--samples", options.search.samples, "grids of the generations, a frame")->capture_default_str();
  app.add_flag("--forget-grids", options.forgetGrids, "grids of earlier rounds don't count");
  app.add_option("--shift-share", options.shiftShare, "of the mean error, against which labels move")
      ->capture_default_str();
  app.add_option("--truncation", options.truncation, "mean loss of results, pixels of the frame")
      ->capture_default_str();
  app.add_option("--checked", options.checked, "frames of people kept out, searched each round")->capture_default_str();
  addFrameOptions(app, options.collector);
  addTrainingOptions(app, options);
  addGridOptions(app, options);
  CLI11_PARSE(app, argc, argv);
  setSeedAndThreads(options, seed, threads);
  // A run takes long: each line at once, also into a file.
  std::setvbuf(stdout, nullptr, _IOLBF, BUFSIZ);
  return exitCodeOf("train_features", [&] {
    ippStaticInit();
    Training(options).run(commandOf(argc, argv));
  });
}
