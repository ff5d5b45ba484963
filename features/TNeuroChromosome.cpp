#include "features/TNeuroChromosome.h"

#include "features/TGenetic.h"
#include "features/TNeuroLocator.h"
#include "features/random.h"

namespace {

constexpr float kShiftSigma = 4.8F, kScaleSigma = 0.21F, kRotationSigma = 10.5F;
constexpr double kPi = 3.1415927410125732;  // the float nearest to pi

// A fresh value of a pose parameter, in the order of the chromosome.
double randomPose(int index) {
  if (index < 2) return rand_g(0.0F, kShiftSigma);
  if (index < 4) return 1.0 + rand_g(0.0F, kScaleSigma);
  return rand_g(0.0F, kRotationSigma) * kPi / 180.0;
}

}  // namespace

void TNeuroChromosome::Randomize() {
  for (int i = 0; i < static_cast<int>(Parameters.size()); ++i) RandomizeParameter(i);
}

void TNeuroChromosome::RandomizeParameter(int index) {
  if (index >= kShapeParameters) return;
  float& parameter = Parameters[static_cast<std::size_t>(index)];
  if (index < EigenCount) {
    const double range = static_cast<double>(Owner->Locator->EigenRanges[index]);
    parameter = static_cast<float>(2.0 * range * rand_u() - range);
  } else {
    parameter = static_cast<float>(randomPose(index - EigenCount));
  }
}

void TNeuroChromosome::Mutate() { RandomizeParameter(rand_i(static_cast<int>(Parameters.size()) - 1)); }

void TNeuroChromosome::Crossingover(TNeuroChromosome* other) {
  const float t = static_cast<float>(rand_u());
  for (std::size_t i = 0; i < Parameters.size(); ++i) {
    Parameters[i] = (1.0F - t) * other->Parameters[i] + t * Parameters[i];
  }
}

void TNeuroChromosome::Copy(TNeuroChromosome* source) {
  Parameters = source->Parameters;
  Value = source->Value;
}

void TNeuroChromosome::CalcValue() {
  TNeuroLocator& locator = *Owner->Locator;
  const float* const p = Parameters.data();
  locator.GenerateGridP(locator.Grid1L, p, p[32], p[33], p[34], p[35], p[36]);
  Value = locator.GridSimilarityL(locator.Grid1L);
}
