// Trains an eye model on frames of collect_eye_frames and writes it in the form of the library's resources.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <stdexcept>

#include "eyes/TEyeHMaxFeatures.h"
#include "eyes/find_eye.h"
#include "training/exit_code.h"
#include "training/eyes/eye_solver.h"

namespace {

struct Options {
  std::string frames;
  std::string output;
  bool second = false;  // the second model's header and length
  int holdOut = 10;     // every so manieth person is kept out for measuring; 0 for none
  std::size_t limit = 0;
  SolverOptions solver;
};

struct Sets {
  std::vector<EyeSample> training;
  std::vector<EyeFrame> testFrames;
  std::vector<EyeSample> testSamples;  // two a frame
};

// The search cannot find what lies outside the places that it compares.
bool canBeFound(const EyeSample& sample) { return sample.x > 2.5 && sample.x < 28.5 && sample.y > -1 && sample.y < 31; }

Sets makeSets(const Options& options) {
  std::vector<EyeFrame> frames = readEyeFrames(options.frames);
  TEyeHMaxFeatures prototype;
  prototype.CreateS1Filters();
  Sets sets;
  const auto isTest = [&](const EyeFrame& f) { return options.holdOut > 0 && f.person % options.holdOut == 0; };
  for (std::size_t i = 0; i < frames.size(); ++i) {
    const EyeFrame& frame = frames[i];
    if (options.limit > 0 && i >= options.limit) break;
    if (isTest(frame) && frame.plain == 0) continue;
    for (int eye = 0; eye < 2; ++eye) {
      EyeSample sample = makeEyeSample(frame, eye, prototype);
      if (isTest(frame)) {
        sets.testSamples.push_back(std::move(sample));
      } else if (canBeFound(sample)) {
        sets.training.push_back(std::move(sample));
      }
    }
    if (isTest(frame)) sets.testFrames.push_back(frame);
  }
  return sets;
}

// Error of one eye in frame pixels, as the search would report it.
double errorOf(const EyeWeights& weights, const EyeSample& sample, int eye) {
  float scores[EyeSample::kSide * EyeSample::kSide] = {};
  scoreSample(weights, sample, scores);
  int x, y;
  BestEyePlace(scores, &x, &y);
  const LabelledPoint reported = reportedPlace(x, y, eye);
  return std::hypot(reported.x - sample.x, reported.y - sample.y);
}

// Shares of the frames whose worse eye is within 5, 10 and 25 % of the distance of the eyes.
void printTest(const EyeWeights& weights, const Sets& sets) {
  if (sets.testFrames.empty()) return;
  int within5 = 0, within10 = 0, within25 = 0;
  double sum = 0;
  for (std::size_t i = 0; i < sets.testFrames.size(); ++i) {
    const auto& eyes = sets.testFrames[i].eyes;
    const double distance = std::hypot(eyes[1].x - eyes[0].x, eyes[1].y - eyes[0].y);
    const double first = errorOf(weights, sets.testSamples[2 * i], 0) / distance;
    const double second = errorOf(weights, sets.testSamples[2 * i + 1], 1) / distance;
    const double worse = std::max(first, second);
    within5 += worse <= 0.05;
    within10 += worse <= 0.10;
    within25 += worse <= 0.25;
    sum += first + second;
  }
  const auto percent = [&](int n) { return 100.0 * n / static_cast<double>(sets.testFrames.size()); };
  std::printf("  test: mean %.2f %%, worse eye within 5 %%: %.1f, 10 %%: %.1f, 25 %%: %.1f",
              100 * sum / static_cast<double>(2 * sets.testFrames.size()), percent(within5), percent(within10),
              percent(within25));
}

void put(std::ofstream& out, const void* data, std::size_t size) {
  out.write(static_cast<const char*>(data), static_cast<std::streamsize>(size));
}

void writeModel(const std::string& file, const eyeFeature& model, bool second) {
  struct Header {
    std::int32_t kernel = 0;  // linear
    float parameters[4] = {3, 1, 1, 1};
    std::int32_t weights;
    std::int32_t vectors = 1;
    float threshold;  // plays no part in the search
    float coefficient = 1;
  };
  static_assert(sizeof(Header) == kEyeModelHeader);
  const std::size_t size = second ? kEyeModel2Size : sizeof model;
  Header header{};
  header.weights = static_cast<std::int32_t>(size / sizeof(float));
  header.threshold = second ? -1.1432589f : -1.5842359f;
  std::ofstream out(file, std::ios::binary);
  put(out, &header, sizeof header);
  put(out, &model, size);
  if (!out.flush()) throw std::runtime_error("cannot write " + file);
}

void run(const Options& options) {
  std::setvbuf(stdout, nullptr, _IOLBF, BUFSIZ);
  const Sets sets = makeSets(options);
  std::printf("%zu windows, %zu frames kept out\n", sets.training.size(), sets.testFrames.size());
  EyeSolver solver(options.solver);
  for (int epoch = 0; epoch < options.solver.epochs; ++epoch) {
    std::printf("%3d: loss %.4f", epoch + 1, solver.runEpoch(sets.training));
    printTest(solver.weights(), sets);
    std::printf("\n");
  }
  writeModel(options.output, solver.weights().toModel(), options.second);
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app("Trains an eye model");
  Options options;
  app.add_option("--frames", options.frames)->required()->check(CLI::ExistingFile);
  app.add_option("--output", options.output, "model file")->required();
  app.add_flag("--second", options.second, "write the form of the second model");
  app.add_option("--hold-out", options.holdOut, "every so manieth person is kept for measuring; 0: none");
  app.add_option("--max", options.limit, "at most so many frames (0: all)");
  app.add_option("--epochs", options.solver.epochs)->capture_default_str();
  app.add_option("--batch", options.solver.batch, "windows a step")->capture_default_str();
  app.add_option("--rate", options.solver.rate)->capture_default_str();
  app.add_option("--decay", options.solver.decay)->capture_default_str();
  app.add_option("--width", options.solver.width, "s.d. of how good a place is, pixels")->capture_default_str();
  app.add_option("--tail", options.solver.tail, "share of a wider Gaussian for near misses")->capture_default_str();
  app.add_flag("--fixed-shares", options.solver.fixedShares, "each place shall win as often as it is good");
  app.add_option("--seed", options.solver.seed)->capture_default_str();
  CLI11_PARSE(app, argc, argv);
  return exitCodeOf("train_eyes", [&] { run(options); });
}
