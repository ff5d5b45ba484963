// The allocator of the test program, which counts and can be told to fail.
//
// The program defines malloc and its kin itself, so whatever allocates in the process comes here: the library, libjpeg,
// libpng, zlib, operator new, exceptions and the C library's own streams.
#pragma once

#include <vector>

enum class TFailure {
  one,         // the n-th allocation alone
  andAllAfter  // the n-th one and all that follow
};

// From now on counts the allocations of this thread and fails the n-th, counted from 1. 0 fails none.
void FailAllocations(long n, TFailure failure);
// Ends that; the number of allocations that were asked for meanwhile.
long StopFailing();

// Blocks that are allocated and not freed, of all threads.
long LiveBlocks();

// Which of that many allocations are to fail, one after the other: all of them where the environment has
// PORTRAITCUT_FAULTS=all, else the first and the last ones and some between.
std::vector<long> PlacesAmong(long count);
