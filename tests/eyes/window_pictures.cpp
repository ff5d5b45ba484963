#include "tests/eyes/window_pictures.h"

#include <algorithm>
#include <cmath>

#include "image/TIppiImage.h"

namespace {

// Waves of random directions, with noise on top.
class Texture {
 public:
  explicit Texture(std::mt19937& random) : random_(random) {
    std::uniform_real_distribution<double> frequency(-1.2, 1.2), phase(0, 6.3);
    for (Wave& wave : waves_) wave = {frequency(random), frequency(random), phase(random)};
  }
  unsigned char at(int x, int y) {
    double value = 128 + std::normal_distribution<double>(0, 6)(random_);
    for (const Wave& wave : waves_) value += 30 * std::sin(wave.x * x + wave.y * y + wave.phase);
    return static_cast<unsigned char>(std::clamp(value, 0.0, 255.0));
  }

 private:
  struct Wave {
    double x, y, phase;
  };
  std::mt19937& random_;
  Wave waves_[5];
};

}  // namespace

std::vector<unsigned char> texturedWindow(std::mt19937& random) {
  Texture texture(random);
  std::vector<unsigned char> window;
  for (int y = 0; y < kEyeWindowSide; ++y) {
    for (int x = 0; x < kEyeWindowSide; ++x) window.push_back(texture.at(x, y));
  }
  return window;
}

void fillTextured(TIppiImage& image, int width, int height, std::mt19937& random) {
  Texture texture(random);
  image.Mode = imGray8;
  image.AllocNew(width, height);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) image.Pixels[y * image.Step + x] = texture.at(x, y);
  }
}

std::unique_ptr<eyeFeature> randomModel(std::mt19937& random) {
  auto model = std::make_unique<eyeFeature>();
  auto* weights = reinterpret_cast<float*>(model.get());
  std::generate_n(weights, sizeof(eyeFeature) / sizeof(float),
                  [&] { return std::uniform_real_distribution<float>(-0.04f, 0.03f)(random); });
  return model;
}

const TEyeHMaxFeatures& testPrototype() {
  static const auto prototype = [] {
    auto made = std::make_unique<TEyeHMaxFeatures>();
    made->CreateS1Filters();
    return made;
  }();
  return *prototype;
}

std::unique_ptr<TEyeWindow> texturedEyeWindow(std::mt19937& random) {
  TIppiImage frame;
  fillTextured(frame, kEyeFrameSide, kEyeFrameSide, random);
  auto window = std::make_unique<TEyeWindow>(testPrototype());
  PrepareEyeWindow(&frame, false, *window);
  return window;
}
