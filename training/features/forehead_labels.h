// Labels for the forehead, where the picture shows no points.
#pragma once

#include <array>
#include <cstddef>

// Coordinates of the forehead on which the box around the nodes does not depend: x of the top, x and y of the upper
// forehead, y of the temples.
constexpr std::size_t kFreeForehead[] = {10, 12, 13, 14, 15, 17, 19};

// How much of a face's way sideways the temples go along with.
constexpr double kTempleShare = 0.6;

// Moves the temples (8, 9) sideways and the top of the forehead (5) up or down, in a frame whose face stands upright:
// the middle of the box around all points then lies where tilted faces come back right, a pixel or two right of and
// below the place about which the picture was turned.
//
// The labels of these nodes are extrapolated, so no evidence is lost. But they span the box, and the box matters: the
// way back to the image turns the found points about the middle of their box, while the picture was turned about the
// middle of the wide crop. With a box that wanders as a head turns to the side, by 10 pixels of the frame, every point
// of a face tilted by 12 degrees would come out 2 pixels off.
void placeForehead(std::array<float, 80>& points);

// The same within a shape that is aligned to the mean face, for the rows of the shape model: ties to the other nodes
// all of the forehead that the box depends on, and puts what it does not depend on where the mean face has it.
void tieForehead(std::array<double, 80>& shape);
