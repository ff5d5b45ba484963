// Kernels of the search for facial points: small networks over patches, shapes made from parameters, and their scores.
// See kernels.h.
#pragma once

#include <cstddef>

#include "primitives/ippdefs.h"

constexpr int kPatchSide = 32;
constexpr int kPatchPixels = kPatchSide * kPatchSide;
constexpr int kHiddenNeurons = 3;

// Ranges are found for the patches at all positions of a square. Its picture has this many more rows and columns than
// positions, and room for whole vectors at the end of each row.
constexpr int kRangeSide = 256;
constexpr int kRangePictureSide = kRangeSide + kPatchSide - 1;
constexpr int kRangePictureStep = 320;
// The value of rank 4, counted from 0: the four darkest (brightest) pixels don't count.
constexpr int kRangeListLength = 5;
constexpr int kRangeMaxLanes = 32;  // of a vector of bytes
constexpr int kRangeRowsAtOnce = 64;
constexpr std::size_t kRangeWorkBytes =
    std::size_t{kRangeListLength} *
    (kRangePictureStep * kRangeRowsAtOnce + kRangeMaxLanes * (kRangeRowsAtOnce + kPatchSide - 1));

// So many shapes are made and scored side by side, one to a lane.
constexpr int kShapeLanes = 8;
using ShapeRow = Ipp32f[kShapeLanes];

struct ShapeModel {
  const Ipp32f* mean;          // x and y of each node in turn
  const Ipp32f* deformations;  // rows of as many coordinates
  int coordinates;             // a multiple of 8
  int deformationCount;
  Ipp32f limit;  // coordinates are clamped to 0 .. limit
};

// Scores of each node for every second column and row of 256: [node][x / 2][y / 2], 0 where not known.
constexpr int kScoreTableSide = 128;
constexpr std::size_t kScoreTableSize = std::size_t{kScoreTableSide} * kScoreTableSide;

struct ScoreTables {
  const Ipp32f* scores;
  int nodes;
  // A node counts if margin < x < right and margin < y < bottom.
  Ipp32f margin, right, bottom;
};

struct PatchKernels {
  // The dot products of 1024 weights a neuron (64-byte aligned) with the patch's pixels, each times `scale` plus
  // `offset` and clamped to -0.5 .. 0.5; partial sums as in VectorKernels.
  void (*hiddenSums)(const Ipp8u* patch, std::ptrdiff_t step, Ipp32f scale, Ipp32f offset,
                     const Ipp32f* const weights[kHiddenNeurons], Ipp32f sums[kHiddenNeurons]);
  // tanh / 2 of each value, computed in double precision.
  void (*halfTanh)(const Ipp32f* values, Ipp32f* result, std::size_t count);
  // The fifth smallest pixel of each patch, row by row; with `flip` 255 the fifth largest. `picture` has the step
  // kRangePictureStep, `work` kRangeWorkBytes.
  void (*patchExtremes)(const Ipp8u* picture, Ipp8u flip, Ipp8u* result, Ipp8u* work);
  // Shapes from rows of parameters (the deformations, shift in x and y, scale in x and y) and their rotations, as rows
  // of coordinates.
  void (*bendShapes)(const ShapeModel& model, const ShapeRow* parameters, const ShapeRow& cosines,
                     const ShapeRow& sines, ShapeRow* nodes);
  // Mean score of the nodes that count in each shape, 0 without any. Where a node's score is not known, its byte of
  // `missing` has the lane's bit set; false if that happens anywhere, and then the means mean nothing.
  bool (*meanScores)(const ScoreTables& tables, const ShapeRow* nodes, ShapeRow& means, Ipp8u* missing);
};

void fillPatchKernelsBase(PatchKernels& table);
void fillPatchKernelsSse41(PatchKernels& table);
void fillPatchKernelsAvx2(PatchKernels& table);
