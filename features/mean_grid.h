// The mean face.
#pragma once

#include "features/TGrid.h"

// The forty nodes of the mean face in the frame of the 256 by 256 face image, where a face is 150 pixels wide.
// Read from its text when the process starts and never changed or destroyed.
extern const TGrid& MeanGrid40;
