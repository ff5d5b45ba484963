// The end of a training program's main.
#pragma once

#include <cstdio>
#include <exception>

// Does the work; what it throws becomes a line on the error stream and exit code 1.
template <typename Work>
int exitCodeOf(const char* program, Work work) {
  try {
    work();
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s: %s\n", program, error.what());
    return 1;
  }
  return 0;
}
