// The square around the points of a face, with a margin.
#pragma once

class TGrid;

// Corners are inclusive pixels, y from the top. The box around the nodes is right for nodes from 0 to 10000; one of
// nodes wholly left of or above 0 reaches to 0.

// The frame without bounds: it may reach outside the image, whose size only settles to which side an odd pixel
// goes. 0.
int CalculateFaceFramePositionNB(const TGrid& grid, int* x1, int* y1, int* x2, int* y2, int width, int height);
// The frame held inside the image, as far as it fits. 0.
int CalculateFaceFramePosition(const TGrid& grid, int* x1, int* y1, int* x2, int* y2, int width, int height);
// The extent of the nodes in whole pixels.
void CalcGridSize(const TGrid& grid, int* width, int* height);
