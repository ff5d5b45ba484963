// Kernels of the vector primitives; see kernels.h.
#pragma once

#include <cstddef>

#include "primitives/ippdefs.h"

// Partial sums of a dot product: element i goes to sum i mod 16, then the upper half is added to the lower one until
// one sum is left. Enough to hide the latency of additions, and a whole number of vectors at every level.
constexpr int kPartialSums = 16;

struct VectorKernels {
  void (*mulC)(Ipp32f value, Ipp32f* data, std::size_t count);
  void (*addC)(Ipp32f value, Ipp32f* data, std::size_t count);
  void (*threshold)(Ipp32f* data, std::size_t count, Ipp32f levelLT, Ipp32f valueLT, Ipp32f levelGT, Ipp32f valueGT);
  Ipp32f (*dotProd)(const Ipp32f* a, const Ipp32f* b, std::size_t count);
};

void fillVectorKernelsBase(VectorKernels& table);
void fillVectorKernelsSse41(VectorKernels& table);
void fillVectorKernelsAvx2(VectorKernels& table);
