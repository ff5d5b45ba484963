#include "primitives/haar_kernels.h"

void fillHaarKernelsAvx2(HaarKernels&) {}
