// The one way in which the library takes a mutex.
#pragma once

#include <pthread.h>

// A mutex on the heap with default attributes.
pthread_mutex_t* NewMutex();
// Ends a mutex of NewMutex and sets the pointer to null. Null does nothing.
void DeleteMutex(pthread_mutex_t*& mutex);

// Holds a mutex to the end of the scope. A null mutex is not locked: before VIZL_Initialize there is none,
// and programs that use the inner layers without the library's frame (training, tests) run that way.
class TScopeLock {
 public:
  explicit TScopeLock(pthread_mutex_t* mutex) : Mutex(mutex) {
    if (Mutex != nullptr) pthread_mutex_lock(Mutex);
  }
  ~TScopeLock() {
    if (Mutex != nullptr) pthread_mutex_unlock(Mutex);
  }
  TScopeLock(const TScopeLock&) = delete;
  TScopeLock& operator=(const TScopeLock&) = delete;

 private:
  pthread_mutex_t* Mutex;
};
