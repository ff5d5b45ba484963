#include "features/random.h"

#include <cmath>
#include <cstdlib>

static_assert(RAND_MAX == 2147483647, "the search's draws are made for this range");

double rand_u() { return std::rand() / 2147483647.0; }

double rand_g(float mean, float sigma) {
  double u, s;
  do {
    u = 2.0 * rand_u() - 1.0;
    const double v = 2.0 * rand_u() - 1.0;
    s = u * u + v * v;
  } while (s >= 1.0);
  return std::sqrt(-2.0 * std::log(s) / s) * u * static_cast<double>(sigma) + static_cast<double>(mean);
}

int rand_i(int n) { return static_cast<int>(rand_u() * n); }
