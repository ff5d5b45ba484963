// Detection contexts and the process-wide settings. They stand at the bottom of the library because the
// codecs (JPEG quality) and the detector both read them.
#pragma once

#include <pthread.h>

struct TParamsEntry {
  bool HandleArbitraryRotations = true;
  bool DetermineFaceRotationAngle = true;
  int InternalResizeWidth = 384;  // pixels
  int Threshold1 = 2;
  int Threshold2 = 3;
  int JpegQuality = 90;       // 0 to 100
  void* UserField = nullptr;  // owned, released with free()
};

// Each takes the value's own mutex for the one access; none checks a range.
bool get_paramHandleArbitraryRotations();
void set_paramHandleArbitraryRotations(bool value);
bool get_paramDetermineFaceRotationAngle();
void set_paramDetermineFaceRotationAngle(bool value);
int get_paramInternalResizeWidth();
void set_paramInternalResizeWidth(int value);
int get_paramThreshold1();
void set_paramThreshold1(int value);
int get_paramThreshold2();
void set_paramThreshold2(int value);
int get_JpegQuality();
void set_JpegQuality(int value);

// The entry of a context, or null for 0, an unknown or a freed id. The entry's fields are not guarded.
TParamsEntry* GetParamsByID(int id);

// The settings as one call sees them: context 0 reads the process-wide values, a known context its entry,
// an unknown one the fixed fall-backs (rotations and angle on, width 384, thresholds 4 and 5, quality 90).
bool ContextHandleArbitraryRotations(int context);
bool ContextDetermineFaceRotationAngle(int context);
int ContextInternalResizeWidth(int context);
int ContextThreshold1(int context);
int ContextThreshold2(int context);
int ContextJpegQuality(int context);

// Creation and freeing of contexts; the codes are those of vizl_api.h.
int CreateContext(int* id);
int FreeContext(int id);
int SetContextUserField(int id, void* value);
int GetContextUserField(int id, void** value);
int SetFaceDetectionParameters(bool handleArbitraryRotations, bool determineFaceRotationAngle, int width, int context);
int SetFaceDetectionThreshold(int threshold1, int threshold2, int context);
int SetJpegQuality(int quality, int context);

// Confidence of the last single-face detection of any thread.
void StoreDetectedFaceConfidence(int confidence);
int LoadDetectedFaceConfidence();

// The mutexes behind the above, made by VIZL_Initialize and ended by VIZL_Finalize.
extern pthread_mutex_t* mutex_params;
extern pthread_mutex_t* mutex_detectedfaceconfidence;
extern pthread_mutex_t* mutex_paramHandleArbitraryRotations;
extern pthread_mutex_t* mutex_paramDetermineFaceRotationAngle;
extern pthread_mutex_t* mutex_paramInternalResizeWidth;
extern pthread_mutex_t* mutex_paramThreshold1;
extern pthread_mutex_t* mutex_paramThreshold2;
extern pthread_mutex_t* mutex_JpegQuality;
