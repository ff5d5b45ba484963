// Start and stop of the library, and its exported data.
#include <array>
#include <iterator>
#include <memory>

#include "api/exported.h"
#include "api/handles.h"
#include "api/resources.h"
#include "detect/TIppiFaceDetector.h"
#include "eyes/eye_model.h"
#include "features/TNeuroLocator.h"
#include "image/lock.h"
#include "image/params.h"
#include "image/pixel_buffer_store.h"
#include "primitives/ippi.h"

volatile unsigned char NeedInterrupt = 0;
unsigned char NeedBreak = 0;
char* DataFilesPath = nullptr;

std::atomic<bool> LibraryReady = false;

namespace {

// In the order of their making and ending.
pthread_mutex_t** const kMutexes[] = {&mutex_params,
                                      &mutex_images,
                                      &mutex_detectedfaceconfidence,
                                      &mutex_paramHandleArbitraryRotations,
                                      &mutex_paramDetermineFaceRotationAngle,
                                      &mutex_paramInternalResizeWidth,
                                      &mutex_paramThreshold1,
                                      &mutex_paramThreshold2,
                                      &mutex_JpegQuality};

struct TMutexDeleter {
  void operator()(pthread_mutex_t* mutex) const { DeleteMutex(mutex); }
};
using TMutexes = std::array<std::unique_ptr<pthread_mutex_t, TMutexDeleter>, std::size(kMutexes)>;

TMutexes newMutexes() {
  TMutexes mutexes;
  for (auto& mutex : mutexes) mutex.reset(NewMutex());
  return mutexes;
}

// All that takes memory comes first, so that a start that lacks it changes nothing.
void initialize() {
  ippStaticInit();
  TMutexes mutexes = newMutexes();
  auto detector = std::make_unique<TIppiFaceDetector>();
  auto locator = std::make_unique<TNeuroLocator>();
  VIZL_resInit();
  InitEyes();
  // A second start leaks what the first one made: another thread could still hold a mutex of it.
  for (std::size_t i = 0; i < mutexes.size(); ++i) *kMutexes[i] = mutexes[i].release();
  IppiFaceDetector = detector.release();
  NeuroLocator = locator.release();
  AbandonAllImages();
}

}  // namespace

int32_t VIZL_Initialize(const char* /*dataPath*/) {
  const bool hadResources = VIZL_resData("MW") != nullptr;
  try {
    initialize();
  } catch (...) {
    if (!hadResources) FinalizeResources();
    return VIZLE_INVALID_ARGUMENT;
  }
  LibraryReady = true;
  return VIZLE_OK;
}

int32_t VIZL_Finalize() {
  return Exported([] {
    LibraryReady = false;
    FreeAllImages();
    FinalizeEyes();
    delete IppiFaceDetector;
    IppiFaceDetector = nullptr;
    delete NeuroLocator;
    NeuroLocator = nullptr;
    FinalizeResources();
    for (pthread_mutex_t** mutex : kMutexes) DeleteMutex(*mutex);
    releaseSpareBuffers();
    return VIZLE_OK;
  });
}

const char* VIZL_GetVersion() { return PORTRAITCUT_VERSION; }
