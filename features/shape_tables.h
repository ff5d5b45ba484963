// The fixed tables of the shape model. The trained ones are in models/models.h.
#pragma once

#include <array>
#include <cstddef>

constexpr int kNodes = 40;
constexpr int kCoordinates = 2 * kNodes;
constexpr int kDeformations = 32;
// What describes a face: the deformations, then shift in x and y (pixels), scale in x and y, rotation (radians).
constexpr int kPoseParameters = 5;
constexpr int kRotationParameter = kDeformations + kPoseParameters - 1;
constexpr int kShapeParameters = kDeformations + kPoseParameters;

// How far the search bends the mean face along each deformation, to either side, in pixels of the 256 by 256 frame.
extern const float eigenvalues[kDeformations];

// 1 where two nodes are linked, row i, column j at i * 40 + j: a symmetric mesh of 118 links between neighbours.
using LinkTable = std::array<unsigned char, kNodes * kNodes>;
extern const LinkTable GraphLinks;

inline bool NodesLinked(int i, int j) {
  return GraphLinks[static_cast<std::size_t>(i * kNodes + j)] || GraphLinks[static_cast<std::size_t>(j * kNodes + i)];
}
