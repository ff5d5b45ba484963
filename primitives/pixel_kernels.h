// See kernels.h.
#pragma once

#include "primitives/ippdefs.h"

struct PixelKernels {
};

void fillPixelKernelsBase(PixelKernels& table);
void fillPixelKernelsSse41(PixelKernels& table);
void fillPixelKernelsAvx2(PixelKernels& table);
