// The trained data inside the library, and the one place that names it.
#pragma once

// The face cascade; see docs/models.md for the form of the stream.
extern "C" const unsigned char class_dat[];
extern "C" const unsigned char class_dat_end[];

// The forty node networks, a stream of masked little-endian 32-bit words; see docs/models.md.
extern "C" const unsigned char neuro_dat[];
extern "C" const unsigned char neuro_dat_end[];

// The deformations of the shape model: 32 orthonormal rows of 80 floats, x0 y0 x1 y1 ... x39 y39.
extern "C" const float eigengrids[32 * 80];

// The mean face in the 256 by 256 frame, and the same shape about its centre: hexadecimal text, ended by a zero byte.
extern "C" const char mean_grid_40_text[];
extern "C" const char base_grid_text[];
