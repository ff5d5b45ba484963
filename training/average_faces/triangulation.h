// Delaunay triangulation of a few dozen points.
#pragma once

#include <array>
#include <vector>

#include "training/face_labels.h"

using Triangle = std::array<std::size_t, 3>;  // indices of points

// No four points on one circle are needed, but no two may coincide.
std::vector<Triangle> triangulate(const std::vector<LabelledPoint>& points);
