// Work over an index range on a few threads.
#pragma once

#include <cstddef>
#include <functional>

namespace evaluation {

// Calls work(i) once for every i below `count`, in any order, on `threads` threads. The first exception
// stops the rest and is thrown again here.
void forEachIndex(std::size_t count, unsigned threads, const std::function<void(std::size_t)>& work);

}  // namespace evaluation
