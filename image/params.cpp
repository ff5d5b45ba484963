#include "image/params.h"

#include "image/lock.h"

pthread_mutex_t* mutex_detectedfaceconfidence = nullptr;
pthread_mutex_t* mutex_paramHandleArbitraryRotations = nullptr;
pthread_mutex_t* mutex_paramDetermineFaceRotationAngle = nullptr;
pthread_mutex_t* mutex_paramInternalResizeWidth = nullptr;
pthread_mutex_t* mutex_paramThreshold1 = nullptr;
pthread_mutex_t* mutex_paramThreshold2 = nullptr;
pthread_mutex_t* mutex_JpegQuality = nullptr;

namespace {

constexpr TParamsEntry kDefaults;

bool paramHandleArbitraryRotations = kDefaults.HandleArbitraryRotations;
bool paramDetermineFaceRotationAngle = kDefaults.DetermineFaceRotationAngle;
int paramInternalResizeWidth = kDefaults.InternalResizeWidth;
int paramThreshold1 = kDefaults.Threshold1;
int paramThreshold2 = kDefaults.Threshold2;
int JpegQuality = kDefaults.JpegQuality;
int DetectedFaceConfidence = 0;

template <typename T>
T load(pthread_mutex_t* mutex, const T& value) {
  TScopeLock lock(mutex);
  return value;
}

template <typename T>
void store(pthread_mutex_t* mutex, T& value, T newValue) {
  TScopeLock lock(mutex);
  value = newValue;
}

}  // namespace

bool get_paramHandleArbitraryRotations() {
  return load(mutex_paramHandleArbitraryRotations, paramHandleArbitraryRotations);
}
void set_paramHandleArbitraryRotations(bool value) {
  store(mutex_paramHandleArbitraryRotations, paramHandleArbitraryRotations, value);
}
bool get_paramDetermineFaceRotationAngle() {
  return load(mutex_paramDetermineFaceRotationAngle, paramDetermineFaceRotationAngle);
}
void set_paramDetermineFaceRotationAngle(bool value) {
  store(mutex_paramDetermineFaceRotationAngle, paramDetermineFaceRotationAngle, value);
}
int get_paramInternalResizeWidth() { return load(mutex_paramInternalResizeWidth, paramInternalResizeWidth); }
void set_paramInternalResizeWidth(int value) { store(mutex_paramInternalResizeWidth, paramInternalResizeWidth, value); }
int get_paramThreshold1() { return load(mutex_paramThreshold1, paramThreshold1); }
void set_paramThreshold1(int value) { store(mutex_paramThreshold1, paramThreshold1, value); }
int get_paramThreshold2() { return load(mutex_paramThreshold2, paramThreshold2); }
void set_paramThreshold2(int value) { store(mutex_paramThreshold2, paramThreshold2, value); }
int get_JpegQuality() { return load(mutex_JpegQuality, JpegQuality); }
void set_JpegQuality(int value) { store(mutex_JpegQuality, JpegQuality, value); }

void StoreDetectedFaceConfidence(int confidence) {
  store(mutex_detectedfaceconfidence, DetectedFaceConfidence, confidence);
}
int LoadDetectedFaceConfidence() { return load(mutex_detectedfaceconfidence, DetectedFaceConfidence); }

namespace {

// An unknown context is stricter than the default (2 and 3): a wrong id shows as missed faces.
constexpr int kFallBackThreshold1 = 4;
constexpr int kFallBackThreshold2 = 5;

template <typename T>
T contextValue(int context, T (*global)(), T TParamsEntry::*field, T fallBack) {
  if (context == 0) return global();
  const TParamsEntry* entry = GetParamsByID(context);
  return entry != nullptr ? entry->*field : fallBack;
}

}  // namespace

bool ContextHandleArbitraryRotations(int context) {
  return contextValue(context, get_paramHandleArbitraryRotations, &TParamsEntry::HandleArbitraryRotations, true);
}
bool ContextDetermineFaceRotationAngle(int context) {
  return contextValue(context, get_paramDetermineFaceRotationAngle, &TParamsEntry::DetermineFaceRotationAngle, true);
}
int ContextInternalResizeWidth(int context) {
  return contextValue(context, get_paramInternalResizeWidth, &TParamsEntry::InternalResizeWidth, 384);
}
int ContextThreshold1(int context) {
  return contextValue(context, get_paramThreshold1, &TParamsEntry::Threshold1, kFallBackThreshold1);
}
int ContextThreshold2(int context) {
  return contextValue(context, get_paramThreshold2, &TParamsEntry::Threshold2, kFallBackThreshold2);
}
int ContextJpegQuality(int context) { return contextValue(context, get_JpegQuality, &TParamsEntry::JpegQuality, 90); }
