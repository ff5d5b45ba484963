#include "image/lock.h"

#include <memory>

pthread_mutex_t* NewMutex() {
  auto mutex = std::make_unique<pthread_mutex_t>();
  pthread_mutex_init(mutex.get(), nullptr);
  return mutex.release();
}

void DeleteMutex(pthread_mutex_t*& mutex) {
  if (mutex == nullptr) return;
  pthread_mutex_destroy(mutex);
  delete mutex;
  mutex = nullptr;
}
