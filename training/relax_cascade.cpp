// Moves the working point of a trained cascade: every stage after the first is set anew to pass a given share of the
// faces that reach it. Features, thresholds of classifiers and stage thresholds stay; the leaf values of a stage are
// shifted together. Trades false faces for missed ones without training again.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <thread>

#include "training/cascade_stream.h"
#include "training/exit_code.h"
#include "training/scan_windows.h"
#include "training/training_set.h"

namespace {

struct Options {
  std::string data;
  std::string input;
  std::string output;
  double keep = 0.9995;
  double lastKeep = 0.9990;
  int copies = 8;
  std::uint32_t seed = 1000;  // other windows of the same faces than those trained on
  unsigned threads = std::max(1u, std::thread::hardware_concurrency());
  FaceJitter jitter;
};

Stage shifted(const Stage& stage, double shift) {
  Stage moved = stage;
  for (WeakClassifier& weak : moved.classifiers) {
    weak.left += static_cast<float>(shift);
    weak.right += static_cast<float>(shift);
  }
  return moved;
}

std::size_t countPassing(const Stage& stage, const std::vector<Window>& windows, unsigned threads) {
  const std::vector<unsigned char> stream = cascadeToStream({stage});
  const TIppiFaceDetector detector(stream.data(), static_cast<unsigned>(stream.size()));
  std::vector<std::size_t> passed(threads);
  std::vector<std::thread> workers;
  for (unsigned t = 0; t < threads; ++t) {
    workers.emplace_back([&, t] {
      WindowScanner scanner(detector);
      for (std::size_t k = t; k < windows.size(); k += threads) passed[t] += scanner.passes(windows[k], 0) ? 1 : 0;
    });
  }
  for (std::thread& worker : workers) worker.join();
  std::size_t sum = 0;
  for (std::size_t part : passed) sum += part;
  return sum;
}

// The smallest shift a leaf, to a hundredth of the range searched, at which the stage passes its share.
Stage relaxed(const Stage& stage, const std::vector<Window>& faces, double keep, unsigned threads) {
  const auto wanted = static_cast<std::size_t>(keep * static_cast<double>(faces.size()));
  double low = -0.02;
  double high = 0.05;
  for (int step = 0; step < 12; ++step) {
    const double middle = 0.5 * (low + high);
    (countPassing(shifted(stage, middle), faces, threads) >= wanted ? high : low) = middle;
  }
  return shifted(stage, high);
}

void run(const Options& options) {
  Cascade cascade = cascadeFromStream(readFile(options.input));
  std::vector<TrainingPicture> portraits = loadPortraits(options.data + "/faces");
  std::vector<Window> faces = makePositives(portraits, options.jitter, options.copies, options.seed, options.threads);
  for (std::size_t s = 0; s < cascade.size(); ++s) {
    const std::size_t before = faces.size();
    const std::size_t trained = countPassing(cascade[s], faces, options.threads);
    const double done = static_cast<double>(s) / static_cast<double>(cascade.size() - 1);
    if (s > 0) {
      cascade[s] = relaxed(cascade[s], faces, options.keep + (options.lastKeep - options.keep) * done, options.threads);
    }
    const std::vector<unsigned char> stream = cascadeToStream({cascade[s]});
    const TIppiFaceDetector detector(stream.data(), static_cast<unsigned>(stream.size()));
    WindowScanner scanner(detector);
    std::erase_if(faces, [&](const Window& window) { return !scanner.passes(window, 0); });
    std::printf("stage %2zu: %zu of %zu faces pass, %zu before\n", s, faces.size(), before, trained);
  }
  writeFile(options.output, cascadeToStream(cascade));
}

}  // namespace

int main(int argc, char** argv) {
  Options options;
  CLI::App app{"Sets the stages of a trained cascade to pass given shares of the faces"};
  app.add_option("--data", options.data, "folder with faces/")->required();
  app.add_option("--input", options.input, "trained cascade")->required();
  app.add_option("--output", options.output)->required();
  app.add_option("--keep", options.keep, "share of the faces that the second stage passes")->capture_default_str();
  app.add_option("--last-keep", options.lastKeep, "the same for the last stage")->capture_default_str();
  app.add_option("--copies", options.copies)->capture_default_str();
  app.add_option("--seed", options.seed)->capture_default_str();
  app.add_option("--scale", options.jitter.logScale, "natural log of the size, +-")->capture_default_str();
  app.add_option("--shift", options.jitter.shift, "pixels of the window, +-")->capture_default_str();
  app.add_option("--shift-right", options.jitter.shiftRight, "widths")->capture_default_str();
  app.add_option("--shift-down", options.jitter.shiftDown, "widths")->capture_default_str();
  CLI11_PARSE(app, argc, argv);
  return exitCodeOf("relax_cascade", [&] { run(options); });
}
