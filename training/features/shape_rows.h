// The rows of the shape model, models/eigengrids.bin, from labelled frames.
#pragma once

#include <array>
#include <vector>

#include "features/shape_tables.h"
#include "training/features/symmetric_eigen.h"

// x and y of the forty nodes in turn, pixels of the frame.
using Shape = std::array<double, kCoordinates>;

// Turned, scaled along each axis and moved to come near the mean face: the pose parameters of the search carry these.
Shape alignedToMean(const Shape& shape);

// An orthonormal row and the root of the mean square of the shapes' coordinates along it.
struct ShapeRowSpread {
  Shape row;
  double spread = 0;
};

// The rows that the search bends the mean face along, in the order of the ranges. Here the principal components of the
// aligned shapes about MeanGrid40, not about their own mean, so that this mean can be reached.
std::vector<ShapeRowSpread> chooseShapeRows(const std::vector<Shape>& aligned);

// Each row's spread beside the range that the search draws from, as a table.
void printShapeRows(const std::vector<ShapeRowSpread>& rows, const std::vector<Shape>& aligned);

std::vector<float> eigenGridsOf(const std::vector<ShapeRowSpread>& rows);
