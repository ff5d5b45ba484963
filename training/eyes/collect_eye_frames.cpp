// Cuts the faces of the train split into the frames in which eyes are searched: where the detector finds them, upright
// and turned, and with other places, sizes and picture qualities.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <map>
#include <mutex>
#include <numbers>
#include <random>

#include "api/vizl_api.h"
#include "detect/TIppiFaceDetector.h"
#include "image/TIppiImage.h"
#include "training/evaluation/detection.h"
#include "training/evaluation/face_set.h"
#include "training/evaluation/matching.h"
#include "training/evaluation/parallel.h"
#include "training/evaluation/turning.h"
#include "training/exit_code.h"
#include "training/eyes/eye_frames.h"

namespace {

struct Options {
  std::string data;
  std::string output;
  unsigned threads = 1;
  unsigned seed = 1;
  std::size_t limit = 0;
  int turns = 2;             // turned copies of a face, besides the picture as it is
  double maxTurn = 15;       // degrees
  int copies = 2;            // jittered frames of each of these
  double shift = 0.035;      // s.d. of the place, face widths
  double scale = 0.06;       // s.d. of the logarithm of the size
  double worse = 0.5;        // share of the jittered frames from a picture made worse
  double smallestCrop = 40;  // pixels a worse picture has left for the crop
};

using Eyes = std::array<LabelledPoint, 2>;
using Random = std::mt19937;

double uniform(Random& random, double low, double high) {
  return std::uniform_real_distribution<double>(low, high)(random);
}

double normal(Random& random, double deviation) { return std::normal_distribution<double>(0, deviation)(random); }

LabelledPoint turnedPoint(const LabelledPoint& point, const FaceSquare& about, double degrees) {
  const double c = std::cos(degrees * std::numbers::pi / 180), s = std::sin(degrees * std::numbers::pi / 180);
  const double dx = point.x - about.xc, dy = point.y - about.yc;
  return {about.xc + c * dx - s * dy, about.yc + s * dx + c * dy};
}

TFacePosition facePosition(double xc, double yc, double w) {
  return {static_cast<int>(std::lround(xc)), static_cast<int>(std::lround(yc)), static_cast<int>(std::lround(w)), 0, 0};
}

// Noise, another contrast and another gamma, each at times.
void spoil(EyeFrame& frame, Random& random) {
  const double noise = std::max(0.0, uniform(random, -4, 8)), gain = uniform(random, 0.6, 1.15);
  const double lift = uniform(random, 0, 255 * std::max(0.0, 1 - gain)), gamma = std::exp(normal(random, 0.25));
  for (std::uint8_t& pixel : frame.pixels) {
    const double value = 255 * std::pow(pixel / 255.0, gamma) * gain + lift + normal(random, noise);
    pixel = static_cast<std::uint8_t>(std::clamp(value, 0.0, 255.0));
  }
}

EyeFrame jitteredFrame(TIppiImage& gray, const Eyes& eyes, const evaluation::Detection& face, const Options& options,
                       Random& random) {
  evaluation::Detection moved = face;
  moved.cx += normal(random, options.shift) * face.w;
  moved.cy += normal(random, options.shift) * face.w;
  moved.w *= std::exp(normal(random, options.scale));
  if (uniform(random, 0, 1) >= options.worse) return cutEyeFrame(gray, eyes, facePosition(moved.cx, moved.cy, moved.w));

  const double crop = 1.1 * moved.w;
  const double ratio = std::min(1.0, uniform(random, options.smallestCrop, 128) / crop);
  TIppiImage small(imGray8);
  gray.Resize(small, ratio);
  const auto reduced = [=](double v) { return (v + 0.5) * ratio - 0.5; };
  const Eyes smallEyes = {{{reduced(eyes[0].x), reduced(eyes[0].y)}, {reduced(eyes[1].x), reduced(eyes[1].y)}}};
  EyeFrame frame = cutEyeFrame(small, smallEyes, facePosition(reduced(moved.cx), reduced(moved.cy), moved.w * ratio));
  spoil(frame, random);
  return frame;
}

class Collector {
 public:
  Collector(const Options& options, TIppiFaceDetector& detector) : options_(options), detector_(detector) {}

  void addFace(const FaceLabel& label, int person, unsigned seed) {
    Random random(seed);
    TIppiImage gray;
    evaluation::loadGray(options_.data + "/faces/" + label.file, gray);
    const FaceSquare square = faceSquare(label);
    std::vector<EyeFrame> frames;
    addTurn(gray, square, {label.nodes[0], label.nodes[1]}, random, frames);
    for (int i = 0; i < options_.turns; ++i) {
      const double turn = uniform(random, -options_.maxTurn, options_.maxTurn);
      TIppiImage turned;
      evaluation::turnPicture(gray, turn, square.xc, square.yc, turned);
      const Eyes eyes = {turnedPoint(label.nodes[0], square, turn), turnedPoint(label.nodes[1], square, turn)};
      addTurn(turned, evaluation::turnedSquare(square, turn), eyes, random, frames);
    }
    for (EyeFrame& frame : frames) frame.person = person;
    const std::lock_guard lock(guard_);
    frames_[seed] = std::move(frames);
  }

  // Sorted by person, in an order that does not depend on the threads.
  std::vector<EyeFrame> take() {
    std::vector<EyeFrame> all;
    for (auto& [seed, frames] : frames_) all.insert(all.end(), frames.begin(), frames.end());
    std::stable_sort(all.begin(), all.end(), [](const EyeFrame& a, const EyeFrame& b) { return a.person < b.person; });
    return all;
  }

 private:
  void addTurn(TIppiImage& gray, const FaceSquare& square, const Eyes& eyes, Random& random,
               std::vector<EyeFrame>& frames) {
    const auto result = evaluation::judge(square, evaluation::detectAll(detector_, gray).faces, {});
    if (!result.found) return;
    const evaluation::Detection& face = *result.found;
    frames.push_back(cutEyeFrame(gray, eyes, facePosition(face.cx, face.cy, face.w)));
    frames.back().plain = 1;
    for (int i = 0; i < options_.copies; ++i) frames.push_back(jitteredFrame(gray, eyes, face, options_, random));
  }

  const Options& options_;
  TIppiFaceDetector& detector_;
  std::mutex guard_;
  std::map<unsigned, std::vector<EyeFrame>> frames_;  // by the seed of the picture
};

void run(const Options& options) {
  std::vector<FaceLabel> labels = readFaceLabels(options.data + "/faces/labels.csv");
  std::erase_if(labels, [](const FaceLabel& label) { return label.validation; });
  labels = evaluation::thinned(labels, options.limit);
  std::map<std::string, int> people;
  for (const FaceLabel& label : labels) people.emplace(label.person, static_cast<int>(people.size()));

  TIppiFaceDetector detector;
  Collector collector(options, detector);
  evaluation::forEachIndex(labels.size(), options.threads, [&](std::size_t i) {
    collector.addFace(labels[i], people.at(labels[i].person), options.seed * 1000003u + static_cast<unsigned>(i));
  });
  const std::vector<EyeFrame> frames = collector.take();
  writeEyeFrames(options.output, frames);
  std::printf("%zu frames of %zu pictures of %zu people\n", frames.size(), labels.size(), people.size());
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app("Cuts training faces into the frames of the eye search");
  Options options;
  app.add_option("--data", options.data, "folder with faces/")->required()->check(CLI::ExistingDirectory);
  app.add_option("--output", options.output, "file of frames")->required();
  app.add_option("--threads", options.threads)->check(CLI::Range(1, 256))->capture_default_str();
  app.add_option("--seed", options.seed)->capture_default_str();
  app.add_option("--max", options.limit, "at most so many pictures (0: all)");
  app.add_option("--turns", options.turns, "turned copies of a face")->capture_default_str();
  app.add_option("--max-turn", options.maxTurn, "degrees")->capture_default_str();
  app.add_option("--copies", options.copies, "jittered frames of each")->capture_default_str();
  app.add_option("--shift", options.shift, "s.d. of the place, face widths")->capture_default_str();
  app.add_option("--scale", options.scale, "s.d. of the logarithm of the size")->capture_default_str();
  app.add_option("--worse", options.worse, "share of jittered frames made worse")->capture_default_str();
  CLI11_PARSE(app, argc, argv);
  return exitCodeOf("collect_eye_frames", [&] { run(options); });
}
