#include "primitives/resample_kernels.h"

void fillResampleKernelsSse41(ResampleKernels&) {}
