// Objects that live as long as the library is in memory.
#pragma once

#include <new>

// A static object whose destructor never runs: a thread that is still at work while the process ends finds it whole. It
// takes no memory of its own from the heap, so that a library that is unloaded after its end leaves nothing behind.
template <typename T>
class TNeverDestroyed {
 public:
  TNeverDestroyed() { new (bytes_) T(); }
  TNeverDestroyed(const TNeverDestroyed&) = delete;
  TNeverDestroyed& operator=(const TNeverDestroyed&) = delete;

  T& value() { return *std::launder(reinterpret_cast<T*>(bytes_)); }

 private:
  alignas(T) unsigned char bytes_[sizeof(T)];
};
