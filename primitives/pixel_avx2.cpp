#include "primitives/pixel_kernels.h"

void fillPixelKernelsAvx2(PixelKernels&) {}
