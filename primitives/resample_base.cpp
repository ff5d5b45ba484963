#include "primitives/resample_kernels.h"

void fillResampleKernelsBase(ResampleKernels&) {}
