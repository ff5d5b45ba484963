#include "primitives/pixel_kernels.h"

void fillPixelKernelsBase(PixelKernels&) {}
