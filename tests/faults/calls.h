// The exported functions that take memory, each with arguments that make it succeed.
#pragma once

#include <functional>
#include <ostream>
#include <vector>

#include "world.h"

struct TCall {
  const char* name;
  std::vector<int32_t> shortage;  // the codes that it may answer when memory is short
  std::function<int32_t(TWorld&)> run;
  // A failed decoding leaves a handle, whose number is told.
  bool leavesHandle = false;
  // The handle kFresh is freed whatever the result.
  bool freesFresh = false;
};

inline std::ostream& operator<<(std::ostream& out, const TCall& call) { return out << call.name; }

std::vector<TCall> CallsUnderTest();
