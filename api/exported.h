// The rule that every exported function with a code keeps.
#pragma once

#include <atomic>

#include "api/vizl_api.h"

// True between VIZL_Initialize and VIZL_Finalize.
extern std::atomic<bool> LibraryReady;

// Runs the body of an exported function and returns its code. The body does not run, and the code is
// VIZLE_INVALID_ARGUMENT, while the library is not ready: there are no mutexes and no detector then. Whatever
// the body throws stops here and becomes `failure`, for callers may be C.
template <typename TBody>
int32_t Exported(TBody body, int32_t failure = VIZLE_INVALID_ARGUMENT) noexcept {
  if (!LibraryReady.load(std::memory_order_acquire)) return VIZLE_INVALID_ARGUMENT;
  try {
    return body();
  } catch (...) {
    return failure;
  }
}
