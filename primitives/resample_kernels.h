// See kernels.h.
#pragma once

#include "primitives/ippdefs.h"

struct ResampleKernels {
};

void fillResampleKernelsBase(ResampleKernels& table);
void fillResampleKernelsSse41(ResampleKernels& table);
void fillResampleKernelsAvx2(ResampleKernels& table);
