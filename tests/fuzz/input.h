// What a target draws its choices from: the bytes of one input, front to back.
#pragma once

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <span>
#include <vector>

// Ends the process with a report, in every build, unless `good` holds.
inline void require(bool good, const char* claim) {
  if (good) return;
  std::fprintf(stderr, "does not hold: %s\n", claim);
  std::abort();
}

// Past its end an input goes on with zeros, so every prefix of an input is an input.
class FuzzInput {
 public:
  FuzzInput(const std::uint8_t* data, std::size_t size) : next_(data), left_(size) {}

  bool Empty() const { return left_ == 0; }
  std::size_t Left() const { return left_; }

  template <typename T>
  T Raw() {
    T value{};
    const std::size_t taken = left_ < sizeof value ? left_ : sizeof value;
    if (taken != 0) std::memcpy(&value, next_, taken);
    Drop(taken);
    return value;
  }
  unsigned Byte() { return Raw<std::uint8_t>(); }
  bool Flag() { return (Byte() & 1) != 0; }
  // `low` to `high`, both included, at most 2^32 - 1 apart.
  int Within(int low, int high) {
    const std::uint64_t span = static_cast<std::uint64_t>(static_cast<std::int64_t>(high) - low) + 1;
    const std::uint64_t drawn = span <= 256 ? Byte() : Raw<std::uint32_t>();
    return static_cast<int>(low + static_cast<std::int64_t>(drawn % span));
  }
  // Any whole number, the ones at which things break more often than others.
  std::int32_t Whole();
  // Any number, not finite ones too.
  double Number();
  // At most `most` of the bytes that are left.
  std::span<const std::uint8_t> Bytes(std::size_t most) {
    const std::span<const std::uint8_t> taken(next_, most < left_ ? most : left_);
    Drop(taken.size());
    return taken;
  }

 private:
  void Drop(std::size_t count) {
    if (count != 0) next_ += count;
    left_ -= count;
  }

  const std::uint8_t* next_;
  std::size_t left_;
};

inline std::int32_t FuzzInput::Whole() {
  constexpr std::int32_t kMin = std::numeric_limits<std::int32_t>::min(),
                         kMax = std::numeric_limits<std::int32_t>::max();
  static constexpr std::array<std::int32_t, 14> kEdges = {0,     1,     -1,    2,     255,       256,  9999,
                                                          10001, 32768, 65535, 65536, 0x1000000, kMin, kMax};
  const unsigned kind = Byte();
  if (kind < kEdges.size()) return kEdges[kind];
  if (kind < 128) return Raw<std::int8_t>();
  return kind < 224 ? Raw<std::int16_t>() : Raw<std::int32_t>();
}

inline double FuzzInput::Number() {
  using Limits = std::numeric_limits<double>;
  static constexpr std::array<double, 14> kEdges = {0.0,
                                                    -0.0,
                                                    1.0,
                                                    -1.0,
                                                    0.5,
                                                    2.0,
                                                    1e-300,
                                                    1e300,
                                                    180.0,
                                                    2147483648.0,
                                                    -1e9,
                                                    Limits::infinity(),
                                                    -Limits::infinity(),
                                                    Limits::quiet_NaN()};
  const unsigned kind = Byte();
  if (kind < kEdges.size()) return kEdges[kind];
  if (kind < 96) return Raw<std::int8_t>() / 16.0;
  if (kind < 192) return Raw<std::int16_t>() / 100.0;
  return kind < 224 ? static_cast<double>(Raw<float>()) : Raw<double>();
}
