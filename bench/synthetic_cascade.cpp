#include "bench/synthetic_cascade.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <random>

#include "image/TIppiImage.h"
#include "primitives/ippi.h"

namespace {

constexpr int kWindow = 20;
constexpr std::array<int, 22> kClassifiers = {3,   16,  21,  39,  33,  44,  50,  51,  56,  71,  80,
                                              103, 111, 102, 135, 137, 140, 160, 177, 182, 211, 213};
constexpr float kWeightScale = 1.0f / 324.0f;

struct Stage {
  std::vector<IppiRect> rects;
  std::vector<float> weights;  // as in the stream, before the scaling
  std::vector<int> num;
  std::vector<float> thresholds, left, right;
  float threshold = 0;
};

// A whole rectangle minus a multiple of one or two inner parts, as Haar features are.
void addClassifier(Stage& stage, std::mt19937& random) {
  const auto below = [&random](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
  const int parts = below(6) == 0 ? 2 : 1;
  const int cellWidth = 2 + below(parts == 1 ? 5 : 4);
  const int cellHeight = 2 + below(7);
  const int columns = parts == 1 ? 2 + below(2) : 2;
  const int rows = parts == 1 ? 1 : 2;
  const int x = below(kWindow - cellWidth * columns + 1);
  const int y = below(kWindow - cellHeight * rows + 1);
  stage.rects.push_back({x, y, cellWidth * columns, cellHeight * rows});
  stage.weights.push_back(-1.0f);
  for (int p = 0; p < parts; p++) {
    const int column = parts == 1 ? columns - 2 : p;
    stage.rects.push_back({x + column * cellWidth, y + p * cellHeight, cellWidth, cellHeight});
    stage.weights.push_back(parts == 1 ? static_cast<float>(columns) : 2.0f);
  }
  std::uniform_real_distribution<float> unit(0.0f, 1.0f);
  stage.num.push_back(parts + 1);
  stage.thresholds.push_back((unit(random) - 0.5f) * 0.02f);
  stage.left.push_back(unit(random));
  stage.right.push_back(unit(random));
}

// The windows of one scale that are still alive, with what the primitives need to judge them.
class Population {
 public:
  explicit Population(const TIppiImage& image)
      : width_(image.Width + 1),
        roi_({image.Width - kWindow + 1, image.Height - kWindow + 1}),
        sum_(size(image)),
        norm_(size(image)),
        sqr_(size(image)),
        mask_(size(image), 255) {
    ippiSqrIntegral_8u32f64f_C1R(image.Pixels, image.Step, sum_.data(), width_ * 4, sqr_.data(), width_ * 8,
                                 {image.Width, image.Height}, -16777216.0f, 0.0);
    ippiRectStdDev_32f_C1R(sum_.data(), width_ * 4, sqr_.data(), width_ * 8, norm_.data(), width_ * 4, roi_,
                           {1, 1, kWindow - 2, kWindow - 2});
  }

  int Survivors(IppiHaarClassifier_32f* state, float threshold) const {
    std::vector<unsigned char> mask = mask_;
    return apply(state, threshold, mask);
  }
  void Cut(IppiHaarClassifier_32f* state, float threshold) { apply(state, threshold, mask_); }

 private:
  std::size_t size(const TIppiImage& image) const {
    return static_cast<std::size_t>(width_) * static_cast<std::size_t>(image.Height + 1);
  }
  int apply(IppiHaarClassifier_32f* state, float threshold, std::vector<unsigned char>& mask) const {
    int count = 0;
    ippiApplyHaarClassifier_32f_C1R(sum_.data(), width_ * 4, norm_.data(), width_ * 4, mask.data(), width_, roi_,
                                    &count, threshold, state);
    return count;
  }

  int width_;
  IppiSize roi_;
  std::vector<float> sum_, norm_;
  std::vector<double> sqr_;
  std::vector<unsigned char> mask_;
};

// The scales of a scan from 1.0 down, without those that a scan pads.
std::vector<Population> makePopulations(TIppiImage& image) {
  std::vector<Population> populations;
  TIppiImage scaled;
  for (float scale = 1.0f; static_cast<float>(std::min(image.Width, image.Height)) * scale > 50.0f; scale /= 1.18f) {
    image.Resize(scaled, scale);
    populations.emplace_back(scaled);
  }
  return populations;
}

IppiHaarClassifier_32f* buildStage(const Stage& stage) {
  std::vector<float> weights = stage.weights;
  for (float& w : weights) w *= kWeightScale;
  std::vector<IppiRect> rects = stage.rects;
  for (IppiRect& r : rects) r.y = kWindow - r.y - r.height;
  IppiHaarClassifier_32f* state = nullptr;
  ippiHaarClassifierInitAlloc_32f(&state, rects.data(), weights.data(), stage.thresholds.data(), stage.left.data(),
                                  stage.right.data(), stage.num.data(), static_cast<int>(stage.num.size()));
  return state;
}

// The threshold that half of the living reach, found by bisection; the others die.
float halve(std::vector<Population>& populations, const Stage& stage) {
  IppiHaarClassifier_32f* state = buildStage(stage);
  const auto survivors = [&](float threshold) {
    int count = 0;
    for (const Population& p : populations) count += p.Survivors(state, threshold);
    return count;
  };
  const int wanted = std::max(1, survivors(-1.0f) / 2);
  float low = 0.0f;
  float high = static_cast<float>(stage.num.size());
  for (int step = 0; step < 24; step++) {
    const float middle = (low + high) / 2;
    (survivors(middle) >= wanted ? low : high) = middle;
  }
  for (Population& p : populations) p.Cut(state, low);
  ippiHaarClassifierFree_32f(state);
  return low;
}

template <typename T>
void put(std::vector<unsigned char>& stream, T value) {
  unsigned char bytes[sizeof(T)];
  std::memcpy(bytes, &value, sizeof(T));
  stream.insert(stream.end(), bytes, bytes + sizeof(T));
}

void putStage(std::vector<unsigned char>& stream, const Stage& stage) {
  put(stream, static_cast<int>(stage.num.size()));
  put(stream, stage.threshold);
  std::size_t f = 0;
  for (std::size_t c = 0; c < stage.num.size(); c++) {
    put(stream, stage.num[c]);
    for (const std::size_t end = f + static_cast<std::size_t>(stage.num[c]); f < end; f++) {
      put(stream, stage.rects[f]);
      put(stream, stage.weights[f]);
    }
    put(stream, stage.thresholds[c]);
    put(stream, stage.left[c]);
    put(stream, stage.right[c]);
  }
}

}  // namespace

std::vector<unsigned char> makeSyntheticCascade(TIppiImage& image) {
  std::mt19937 random(2135);
  std::vector<Population> populations = makePopulations(image);
  std::vector<unsigned char> stages;
  int classifiers = 0;
  int features = 0;
  for (const int count : kClassifiers) {
    Stage stage;
    for (int c = 0; c < count; c++) addClassifier(stage, random);
    stage.threshold = halve(populations, stage);
    putStage(stages, stage);
    classifiers += count;
    features += static_cast<int>(stage.rects.size());
  }
  std::vector<unsigned char> stream;
  for (const int word : {kWindow, kWindow, static_cast<int>(kClassifiers.size()), classifiers, features})
    put(stream, word);
  stream.insert(stream.end(), stages.begin(), stages.end());
  return stream;
}
