#include "primitives/resample_x86.h"

void fillResampleKernelsAvx2(ResampleKernels& table) { fillResample128(table); }
