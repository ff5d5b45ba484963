// The tables by which a place of the search window is scored as an eye, and their life.
#pragma once

#include <cstddef>
#include <cstdint>

class TEyeHMaxFeatures;
struct TEyeRows;

constexpr int kEyeReach = 5;                 // columns and rows that count on each side of a place
constexpr int kEyeSpan = 2 * kEyeReach + 1;  // dx and dy are 0 to 10: offset from the place plus kEyeReach
constexpr int kEyeBins = 12;
constexpr int kLbpCodes = 59;

// One weight for each value of each feature; low sums are eyes. Bin 12, which the value 1.0 gives, is the first weight
// of what follows a row: the tables are one flat run of floats.
struct eyeFeature {
  float s1Weights[8][2][kEyeSpan][kEyeSpan][kEyeBins];  // orientation, band, dx, dy, bin
  float c1Weights[kEyeBins];
  float xWeights[3];  // thirds of the window
  float yWeights[3];
  float reserved[3];
  float lbpWeights0[kEyeSpan][kEyeSpan][kLbpCodes];  // patterns of the window at full size
  float lbpWeights1[kEyeSpan][kEyeSpan][kLbpCodes];  // at half size
  float lbpWeights2[kEyeSpan][kEyeSpan][kLbpCodes];  // at a quarter
};
static_assert(sizeof(eyeFeature) == 178680);

// What stands before the weights in a model resource: kernel code 0 (linear), four parameters, weight count, one
// support vector, threshold, coefficient. Only differences of scores matter, so none of it is read.
constexpr std::size_t kEyeModelHeader = 36;
// The second model lacks the last 30 weights.
constexpr std::size_t kEyeModel2Size = sizeof(eyeFeature) - 30 * sizeof(float);

// Written by InitEyes and FinalizeEyes only; searches read them without a lock.
extern TEyeHMaxFeatures* eyeHMaxPrototype;
extern TEyeRows* eyeRows;                        // the model that searches use
extern unsigned char eyeModel2[kEyeModel2Size];  // no score reads it

// Puts another model in the place of the searches' own, while none runs.
void UseEyeModel(const eyeFeature& model);

// Make filters and models from the resources, and destroy them. Both return 0. What the former throws for lack of
// memory leaves the present ones in place.
int InitEyes();
int FinalizeEyes();
