#include "detect/cascade_stream.h"

#include <bit>
#include <cstdint>
#include <stdexcept>

namespace {

std::uint32_t littleEndian(const unsigned char* p) {
  return static_cast<std::uint32_t>(p[0]) | static_cast<std::uint32_t>(p[1]) << 8 |
         static_cast<std::uint32_t>(p[2]) << 16 | static_cast<std::uint32_t>(p[3]) << 24;
}

}  // namespace

int CascadeStream::Int() {
  if (left_ < 4) throw std::invalid_argument("cascade stream is cut short");
  const std::uint32_t word = littleEndian(next_);
  next_ += 4;
  left_ -= 4;
  return static_cast<int>(word);
}

int CascadeStream::IntWithin(int low, int high) {
  const int value = Int();
  if (value < low || value > high) throw std::invalid_argument("cascade stream holds a number out of range");
  return value;
}

float CascadeStream::Float() { return std::bit_cast<float>(Int()); }
