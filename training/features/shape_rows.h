// The rows of the shape model, models/eigengrids.bin, from labelled frames.
#pragma once

#include <array>
#include <vector>

#include "features/shape_tables.h"
#include "training/features/symmetric_eigen.h"

// x and y of the forty nodes in turn, pixels of the frame.
using Shape = std::array<double, kCoordinates>;

// MeanGrid40.
Shape meanShape();

// Turned, scaled along each axis and moved to come near the mean face: the pose parameters of the search carry these.
Shape alignedToMean(const Shape& shape);

// An orthonormal row and the root of the mean square of the shapes' coordinates along it.
struct ShapeRowSpread {
  Shape row;
  double spread = 0;
};

// The rows that the search bends the mean face along, in the order of the ranges, which are given and far wider than
// faces need. What a row does with the excess decides how far the search can stray:
//   - the widest range turns the head to the side, the strongest principal component, which alone can use much of it;
//   - the second and the fourth move the face to the side and up and down, as pose parameters do anyway;
//   - the third leads from MeanGrid40 to the mean of the shapes, which the components go about;
//   - five more components follow, with ranges of two to four spreads;
//   - seven rows move one coordinate of the forehead each, on which the box around the face does not depend: the search
//     may do there what it likes;
//   - then eight more components; those behind are left out: faces lie less far along them than searches err;
//   - three rows turn and stretch the face, a little where the pose parameters do it by much;
//   - what is left is chance, and goes where it does the least harm: the temples apart, and pupils and corners of the
//     mouth sideways, one by one.
// In every row the forehead goes along with the rest as tieForehead has it.
std::vector<ShapeRowSpread> chooseShapeRows(const std::vector<Shape>& aligned);

// How far the aligned shapes lie along each of 32 rows of 80, pixels.
std::vector<double> spreadsAlong(const std::vector<float>& eigenGrids, const std::vector<Shape>& aligned);

// Each row's spread beside the range that the search draws from, as a table.
void printShapeRows(const std::vector<ShapeRowSpread>& rows, const std::vector<Shape>& aligned);

std::vector<float> eigenGridsOf(const std::vector<ShapeRowSpread>& rows);
