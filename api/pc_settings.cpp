#include "api/pc_settings.h"

#include <atomic>
#include <cstdlib>

#include "api/exported.h"

namespace {

// Each value is whole for every reader; a set of them that changes meanwhile is not.
std::atomic<float> processFaceScale = 1.0f;
std::atomic<float> processShiftX = 0.0f;
std::atomic<float> processShiftY = 0.0f;
std::atomic<PcDetectionPerformance> processPerformance = PcPerformanceBalanced;

// The record of a context, made with the values of kNoRecord if it has none yet.
int32_t recordOf(ContextID context, PcFaceRecord*& record) {
  void* field = nullptr;
  int32_t code = VIZL_GetContextUserField(context, &field);
  if (code != VIZLE_OK) return code;
  record = static_cast<PcFaceRecord*>(field);
  if (record != nullptr) return VIZLE_OK;
  record = static_cast<PcFaceRecord*>(std::malloc(sizeof(PcFaceRecord)));
  if (record == nullptr) return VIZLE_INVALID_ARGUMENT;
  *record = kNoRecord;
  code = VIZL_SetContextUserField(context, record);
  if (code != VIZLE_OK) std::free(record);
  return code;
}

struct TDetectionParameters {
  bool handleArbitraryRotations;
  bool determineFaceRotationAngle;
  int internalResizeWidth;
};

// Indexed by PcDetectionPerformance.
constexpr TDetectionParameters kParameters[] = {{false, false, 100}, {true, false, 256}, {true, true, 384}};

int32_t applyPerformance(PcDetectionPerformance value, ContextID context) {
  if (value < PcPerformanceFast || value > PcPerformanceThorough) return VIZLE_INVALID_ARGUMENT;
  const TDetectionParameters& row = kParameters[value];
  return VIZL_SetFaceDetectionParameters_C(row.handleArbitraryRotations, row.determineFaceRotationAngle,
                                           row.internalResizeWidth, context);
}

}  // namespace

int32_t ReadPcSettings(ContextID context, PcFaceRecord& settings) {
  if (context == 0) {
    settings = {processFaceScale, processShiftX, processShiftY, processPerformance};
    return VIZLE_OK;
  }
  void* field = nullptr;
  const int32_t code = VIZL_GetContextUserField(context, &field);
  if (code != VIZLE_OK) return code;
  settings = field != nullptr ? *static_cast<const PcFaceRecord*>(field) : kNoRecord;
  return VIZLE_OK;
}

int32_t pcSetFaceScale(float scale) { return pcSetFaceScale_C(scale, 0); }

int32_t pcSetFaceScale_C(float scale, int32_t context) {
  return Exported([=] {
    // Written so that a NaN passes: it is the cut that refuses it.
    if (static_cast<double>(scale) <= 0.00001) return VIZLE_INVALID_ARGUMENT;
    if (context == 0) {
      processFaceScale = scale;
      return VIZLE_OK;
    }
    PcFaceRecord* record;
    const int32_t code = recordOf(context, record);
    if (code == VIZLE_OK) record->faceScale = scale;
    return code;
  });
}

int32_t pcSetFaceShift(float shiftX, float shiftY) { return pcSetFaceShift_C(shiftX, shiftY, 0); }

int32_t pcSetFaceShift_C(float shiftX, float shiftY, int32_t context) {
  return Exported([=] {
    if (context == 0) {
      processShiftX = shiftX;
      processShiftY = shiftY;
      return VIZLE_OK;
    }
    PcFaceRecord* record;
    const int32_t code = recordOf(context, record);
    if (code != VIZLE_OK) return code;
    record->shiftX = shiftX;
    record->shiftY = shiftY;
    return VIZLE_OK;
  });
}

int32_t pcSetDetectionPerformance(PcDetectionPerformance value) { return pcSetDetectionPerformance_C(value, 0); }

// An unknown value is stored all the same: from then on cuts frame by the face.
int32_t pcSetDetectionPerformance_C(PcDetectionPerformance value, int32_t context) {
  return Exported([=] {
    if (context == 0) {
      processPerformance = value;
      return applyPerformance(value, 0);
    }
    PcFaceRecord* record;
    if (recordOf(context, record) != VIZLE_OK) return VIZLE_INVALID_ARGUMENT;
    record->performance = value;
    return applyPerformance(value, context);
  });
}
