#include "primitives/resample_kernels.h"

void fillResampleKernelsAvx2(ResampleKernels&) {}
