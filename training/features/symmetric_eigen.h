// Eigenvectors of a symmetric matrix.
#pragma once

#include <vector>

struct EigenPairs {
  std::vector<double> values;                // descending
  std::vector<std::vector<double>> vectors;  // orthonormal, in the same order
};

// By Jacobi's rotations. `matrix` is `size` rows of as many numbers.
EigenPairs symmetricEigen(std::vector<double> matrix, std::size_t size);
