#include "features/sort_ranked.h"

#include <utility>

void SortRanked(RankedMember* members, int left, int right, int wanted) {
  while (left < wanted) {
    int i = left, j = right;
    const float pivot = members[(left + right) / 2].value;
    do {
      while (members[i].value > pivot) ++i;
      while (members[j].value < pivot) --j;
      if (j < i) break;
      std::swap(members[i++], members[j--]);
    } while (j >= i);
    if (left < j) SortRanked(members, left, j, wanted);
    if (i >= right) return;
    left = i;
  }
}
