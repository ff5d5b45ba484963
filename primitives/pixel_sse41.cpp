#include "primitives/pixel_kernels.h"

void fillPixelKernelsSse41(PixelKernels&) {}
