// The settings of the portrait-cut functions.
#pragma once

#include <cstdint>

#include "api/pc_api.h"

// The settings of one context, in its user field: from malloc, since freeing the context releases it by free.
struct PcFaceRecord {
  float faceScale;
  float shiftX;  // in widths of the natural frame
  float shiftY;  // in heights of it
  PcDetectionPerformance performance;
};

// A context without a record cuts like this, whatever the process-wide settings are.
constexpr PcFaceRecord kNoRecord = {1.0f, 0.0f, 0.0f, PcPerformanceFast};

// The settings that a call with this context uses.
int32_t ReadPcSettings(ContextID context, PcFaceRecord& settings);
