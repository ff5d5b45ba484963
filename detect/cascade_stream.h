// Reading of the cascade stream with every count and rectangle checked.
#pragma once

#include <cstddef>

// A cursor over little-endian 32-bit words; reading past the end throws std::invalid_argument.
class CascadeStream {
 public:
  CascadeStream(const unsigned char* data, std::size_t size) : next_(data), left_(size) {}
  int Int();
  // An integer of `low` to `high`, or std::invalid_argument.
  int IntWithin(int low, int high);
  float Float();
  std::size_t BytesLeft() const { return left_; }

 private:
  const unsigned char* next_;
  std::size_t left_;
};
