// Owns a file descriptor.
#ifndef APPS_PORTRAITCUT_DESCRIPTOR_H
#define APPS_PORTRAITCUT_DESCRIPTOR_H

#include <unistd.h>

#include <utility>

class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int value) : value_(value) {}
  Descriptor(Descriptor&& other) noexcept : value_(std::exchange(other.value_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(value_, other.value_);
    return *this;
  }
  ~Descriptor() { reset(); }

  int get() const { return value_; }
  explicit operator bool() const { return value_ >= 0; }
  void reset() {
    if (value_ >= 0) close(std::exchange(value_, -1));
  }

 private:
  int value_ = -1;
};

#endif
