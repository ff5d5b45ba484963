// The sort of the genetic search.
#pragma once

class TNeuroChromosome;

struct RankedMember {
  float value;
  TNeuroChromosome* member;
};

// A quick sort by descending value, from `left` to `right`, both included, whose steps fix the order of equal values.
// Parts of the range that begin at `wanted` or behind are left unsorted.
void SortRanked(RankedMember* members, int left, int right, int wanted);
