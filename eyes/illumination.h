// Removing the light from a small gray picture: buffers row by row, without padding.
#pragma once

// Replaces the image by its reflectance, the ratio to its own heavily smoothed copy: 100 is a pixel like its
// surroundings, 200 one twice as bright, black stays black. Nothing happens if a side is below 1.
void IlluminationReflactanceDecomposition(unsigned char* image, int width, int height);

// The smoothed copy: 100 sweeps of relaxation for (1 + sum w) L(p) = I(p) + sum w L(n) with w = 100 for each
// neighbour n. Border pixels have the two neighbours along the border, corners keep their value.
void diffur(const unsigned char* image, float* illumination, int width, int height);
