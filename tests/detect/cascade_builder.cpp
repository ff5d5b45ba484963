#include "tests/detect/cascade_builder.h"

std::vector<unsigned char> TestCascade::Stream() const {
  int classifiers = 0;
  int features = 0;
  for (const StageData& stage : stages) {
    classifiers += static_cast<int>(stage.num.size());
    features += static_cast<int>(stage.rects.size());
  }
  std::vector<unsigned char> stream;
  for (const int word : {windowWidth, windowHeight, static_cast<int>(stages.size()), classifiers, features}) {
    putWords(stream, word);
  }
  for (std::size_t s = 0; s < stages.size(); s++) {
    const StageData& stage = stages[s];
    putWords(stream, static_cast<int>(stage.num.size()));
    putWords(stream, thresholds[s]);
    std::size_t f = 0;
    for (std::size_t c = 0; c < stage.num.size(); c++) {
      putWords(stream, stage.num[c]);
      for (const std::size_t end = f + static_cast<std::size_t>(stage.num[c]); f < end; f++) {
        putWords(stream, stage.rects[f]);
        putWords(stream, stage.weights[f]);
      }
      putWords(stream, stage.thresholds[c]);
      putWords(stream, stage.val1[c]);
      putWords(stream, stage.val2[c]);
    }
  }
  return stream;
}

TestCascade squareCascade() {
  StageData stage;
  const auto darkerSide = [&stage](const IppiRect& both, const IppiRect& middle) {
    stage.rects.insert(stage.rects.end(), {both, middle});
    stage.weights.insert(stage.weights.end(), {1.0f, -2.0f});
    stage.thresholds.push_back(-0.2f);
    stage.val1.push_back(1.0f);
    stage.val2.push_back(0.0f);
    stage.num.push_back(2);
  };
  darkerSide({0, 5, 10, 10}, {5, 5, 5, 10});
  darkerSide({10, 5, 10, 10}, {10, 5, 5, 10});
  darkerSide({5, 0, 10, 10}, {5, 5, 10, 5});
  darkerSide({5, 10, 10, 10}, {5, 10, 10, 5});
  return {20, 20, {stage}, {4.0f}};
}

TestCascade randomCascade(int windowWidth, int windowHeight, int stages, std::mt19937& random) {
  TestCascade cascade = {windowWidth, windowHeight, {}, {}};
  std::uniform_real_distribution<float> share(0.25f, 0.45f);
  for (int s = 0; s < stages; s++) {
    StageData stage = randomStage(2 + static_cast<int>(random() % 6), windowWidth, windowHeight, random);
    for (float& w : stage.weights) w = w < 0 ? -1.0f : 2.0f;
    for (float& t : stage.thresholds) t *= 2;
    if (s == 0) stage.rects[0] = {0, 0, windowWidth, windowHeight};
    cascade.thresholds.push_back(share(random) * static_cast<float>(stage.num.size()));
    cascade.stages.push_back(stage);
  }
  return cascade;
}
