#include "primitives/haar_kernels.h"

void fillHaarKernelsBase(HaarKernels&) {}
