#include "primitives/resample_x86.h"

void fillResampleKernelsSse41(ResampleKernels& table) { fillResample128(table); }
