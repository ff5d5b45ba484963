// See kernels.h.
#pragma once

#include "primitives/ippdefs.h"

struct HaarKernels {
};

void fillHaarKernelsBase(HaarKernels& table);
void fillHaarKernelsSse41(HaarKernels& table);
void fillHaarKernelsAvx2(HaarKernels& table);
