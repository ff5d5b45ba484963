#include "primitives/haar_kernels.h"

void fillHaarKernelsSse41(HaarKernels&) {}
