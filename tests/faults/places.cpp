#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "allocations.h"

std::vector<long> PlacesAmong(long count) {
  const long first = count < 100 ? 8 : 3;
  constexpr long kLast = 2, kBetween = 5;
  const char* const wish = std::getenv("PORTRAITCUT_FAULTS");
  const bool all = wish != nullptr && std::strcmp(wish, "all") == 0;
  std::vector<long> places;
  for (long n = 1; n <= count;) {
    places.push_back(n);
    n += all || n < first || n > count - kLast ? 1 : std::min(1 + count / kBetween, std::max(count - kLast - n, 1L));
  }
  return places;
}
