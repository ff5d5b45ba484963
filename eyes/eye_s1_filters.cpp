// The kernels of the S1 layer, made once at the start of the library.
#include <cmath>
#include <numeric>

#include "eyes/TEyeHMaxFeatures.h"

namespace {

constexpr int kSide = TEyeHMaxFeatures::kSide;
constexpr int kCentre = kSide / 2;

// Wavelength of each scale's grating and radius of its disc, pixels.
constexpr float eyeFilterLambda[TEyeHMaxFeatures::kScales] = {3.5f, 4.6f, 5.6f, 6.8f};

// Where the pixel (x, y) of a kernel centred in the window lies once the centre is moved to pixel (0, 0).
std::size_t slotOf(int x, int y) {
  return static_cast<std::size_t>((x + kCentre) % kSide + kSide * ((y + kCentre) % kSide));
}

// Rounded to float on purpose: the disc's edge and the wave are those of the float coordinates.
struct TTurned {
  TTurned(int x, int y, double angle)
      : u(static_cast<float>((x - kCentre) * std::cos(angle) + (y - kCentre) * std::sin(angle))),
        v(static_cast<float>((y - kCentre) * std::cos(angle) + (kCentre - x) * std::sin(angle))) {}
  bool inside(double radius) const { return u * u + v * v <= radius * radius; }
  double u;
  double v;
};

// Calls work(x, y, turned place) for the pixels of the disc, column by column: the order of the sums.
template <class Work>
void forDisc(double angle, double radius, Work work) {
  for (int x = 0; x < kSide; ++x) {
    for (int y = 0; y < kSide; ++y) {
      const TTurned turned(x, y, angle);
      if (turned.inside(radius)) work(x, y, turned);
    }
  }
}

// A grating of mean 0 over the disc, divided by its energy.
void makeGrating(double angle, double lambda, TEyeHMaxFeatures::TMap& kernel) {
  constexpr double kTwoPi = 6.2831854820251465;  // pi of single precision, doubled
  float sum = 0;
  int count = 0;
  kernel.fill(0);
  forDisc(angle, lambda, [&](int x, int y, const TTurned& turned) {
    const auto value = static_cast<float>(std::cos(kTwoPi / lambda * turned.u));
    kernel[slotOf(x, y)] = value;
    sum += value;
    ++count;
  });
  const float mean = sum / static_cast<float>(count);
  forDisc(angle, lambda, [&](int x, int y, const TTurned&) { kernel[slotOf(x, y)] -= mean; });
  const float energy = std::inner_product(kernel.begin(), kernel.end(), kernel.begin(), 0.0f);
  for (float& value : kernel) value /= energy;
}

// Ones in the disc. Returns their number.
int makeDisc(double radius, TEyeHMaxFeatures::TMap& mask) {
  int area = 0;
  mask.fill(0);
  for (int x = 0; x < kSide; ++x) {
    for (int y = 0; y < kSide; ++y) {
      const int dx = x - kCentre, dy = y - kCentre;
      if (dx * dx + dy * dy > radius * radius) continue;
      mask[slotOf(x, y)] = 1;
      ++area;
    }
  }
  return area;
}

}  // namespace

void TEyeHMaxFeatures::CreateS1Filters() {
  makeTransform();
  auto bank = std::make_shared<TBank>();
  for (int k = 0; k < kOrientations; ++k) {
    const float angle = static_cast<float>(k) * 3.1415927f * 0.125f;
    for (int s = 0; s < kScales; ++s) {
      makeGrating(static_cast<double>(angle), static_cast<double>(eyeFilterLambda[s]), bank->s1Filters[k][s]);
      toSpectrum(bank->s1Filters[k][s]);
    }
  }
  for (int s = 0; s < kScales; ++s) {
    bank->discAreas[s] = makeDisc(static_cast<double>(eyeFilterLambda[s]), bank->discMasks[s]);
    toSpectrum(bank->discMasks[s]);
  }
  bank_ = std::move(bank);
}
