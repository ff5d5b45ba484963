// The mean face.
#pragma once

#include "features/TGrid.h"

// The forty nodes of the mean face in the frame of the 256 by 256 face image, where a face is 150 pixels wide.
// Read from its text when the library is loaded and never changed. Searches that run while the process ends find it
// whole.
extern const TGrid& MeanGrid40;

// Reads it if there was no memory for it when the library was loaded. While no search runs.
void LoadMeanGrid40();
