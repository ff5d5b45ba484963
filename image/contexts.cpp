// The table of detection contexts.
#include <algorithm>
#include <cstdlib>
#include <memory>
#include <vector>

#include "api/vizl_api.h"
#include "image/lock.h"
#include "image/never_destroyed.h"
#include "image/params.h"

pthread_mutex_t* mutex_params = nullptr;

namespace {

// Contexts outlive VIZL_Finalize.
TNeverDestroyed<std::vector<TParamsEntry*>> ParamsOfLibrary;
std::vector<TParamsEntry*>& Params = ParamsOfLibrary.value();

// The caller holds mutex_params.
TParamsEntry* findEntry(int id) {
  if (id <= 0 || static_cast<std::size_t>(id) > Params.size()) return nullptr;
  return Params[static_cast<std::size_t>(id) - 1];
}

}  // namespace

TParamsEntry* GetParamsByID(int id) {
  TScopeLock lock(mutex_params);
  return findEntry(id);
}

int CreateContext(int* id) {
  if (id == nullptr) return VIZLE_INVALID_ARGUMENT;
  TScopeLock lock(mutex_params);
  auto entry = std::make_unique<TParamsEntry>();
  auto slot = std::find(Params.begin(), Params.end(), nullptr);
  if (slot == Params.end()) slot = Params.insert(slot, nullptr);
  *slot = entry.release();
  *id = static_cast<int>(slot - Params.begin()) + 1;
  return VIZLE_OK;
}

int FreeContext(int id) {
  TScopeLock lock(mutex_params);
  TParamsEntry* entry = findEntry(id);
  if (entry == nullptr) return VIZLE_INVALID_ARGUMENT;
  std::free(entry->UserField);
  delete entry;
  // Only the freed slot itself leaves the table; a null slot before it stays and is filled first.
  if (static_cast<std::size_t>(id) == Params.size()) {
    Params.pop_back();
    if (Params.empty()) Params.shrink_to_fit();
  } else {
    Params[static_cast<std::size_t>(id) - 1] = nullptr;
  }
  return VIZLE_OK;
}

int SetContextUserField(int id, void* value) {
  if (value == nullptr) return VIZLE_INVALID_ARGUMENT;
  TScopeLock lock(mutex_params);
  TParamsEntry* entry = findEntry(id);
  if (entry == nullptr) return VIZLE_INVALID_ARGUMENT;
  entry->UserField = value;
  return VIZLE_OK;
}

int GetContextUserField(int id, void** value) {
  if (value == nullptr) return VIZLE_INVALID_ARGUMENT;
  TScopeLock lock(mutex_params);
  const TParamsEntry* entry = findEntry(id);
  if (entry == nullptr) return VIZLE_INVALID_ARGUMENT;
  *value = entry->UserField;
  return VIZLE_OK;
}

int SetFaceDetectionParameters(bool handleArbitraryRotations, bool determineFaceRotationAngle, int width, int context) {
  constexpr int kSmallestWidth = 20;
  if (width < kSmallestWidth) return VIZLE_INVALID_ARGUMENT;
  if (context == 0) {
    set_paramHandleArbitraryRotations(handleArbitraryRotations);
    set_paramDetermineFaceRotationAngle(determineFaceRotationAngle);
    set_paramInternalResizeWidth(width);
    return VIZLE_OK;
  }
  TParamsEntry* entry = GetParamsByID(context);
  if (entry == nullptr) return VIZLE_INVALID_ARGUMENT;
  entry->HandleArbitraryRotations = handleArbitraryRotations;
  entry->DetermineFaceRotationAngle = determineFaceRotationAngle;
  entry->InternalResizeWidth = width;
  return VIZLE_OK;
}

int SetFaceDetectionThreshold(int threshold1, int threshold2, int context) {
  if (threshold1 < 1 || threshold2 < 1) return VIZLE_INVALID_ARGUMENT;
  if (context == 0) {
    set_paramThreshold1(threshold1);
    set_paramThreshold2(threshold2);
    return VIZLE_OK;
  }
  TParamsEntry* entry = GetParamsByID(context);
  if (entry == nullptr) return VIZLE_INVALID_ARGUMENT;
  entry->Threshold1 = threshold1;
  entry->Threshold2 = threshold2;
  return VIZLE_OK;
}

int SetJpegQuality(int quality, int context) {
  constexpr int kBestQuality = 100;
  if (quality < 0 || quality > kBestQuality) return VIZLE_INVALID_ARGUMENT;
  if (context == 0) {
    set_JpegQuality(quality);
    return VIZLE_OK;
  }
  TParamsEntry* entry = GetParamsByID(context);
  if (entry == nullptr) return VIZLE_INVALID_ARGUMENT;
  entry->JpegQuality = quality;
  return VIZLE_OK;
}
