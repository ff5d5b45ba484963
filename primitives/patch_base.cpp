// The search's kernels in the compiler's own vector types: the instructions that every processor of the kind has.
#include <cstdint>
#include <cstring>

#include "primitives/patch_loops.h"

namespace {

template <class To, class From>
To bitsAs(From value) {
  static_assert(sizeof(To) == sizeof(From));
  To result;
  std::memcpy(&result, &value, sizeof(result));
  return result;
}

struct PortableFloats {
  static constexpr int kLanes = 4;
  typedef float Type __attribute__((vector_size(16)));
  typedef std::int32_t Mask __attribute__((vector_size(16)));
  static Type load(const float* p) {
    Type value;
    std::memcpy(&value, p, sizeof(value));
    return value;
  }
  static void store(float* p, Type value) { std::memcpy(p, &value, sizeof(value)); }
  static Type set(float value) { return Type{value, value, value, value}; }
  static Type add(Type a, Type b) { return a + b; }
  static Type sub(Type a, Type b) { return a - b; }
  static Type mul(Type a, Type b) { return a * b; }
  static Type div(Type a, Type b) { return a / b; }
  static Mask less(Type a, Type b) { return a < b; }
  static Mask equal(Type a, Type b) { return a == b; }
  static Mask both(Mask a, Mask b) { return a & b; }
  static Type where(Mask mask, Type a) { return bitsAs<Type>(mask & bitsAs<Mask>(a)); }
  static Type atLeast(Type low, Type a) { return select(a < low, low, a); }
  static Type atMost(Type high, Type a) { return select(high < a, high, a); }
  static unsigned mask(Mask m) { return static_cast<unsigned>((m[0] & 1) | (m[1] & 2) | (m[2] & 4) | (m[3] & 8)); }
  static Type pixels(const Ipp8u* p) {
    return Type{static_cast<float>(p[0]), static_cast<float>(p[1]), static_cast<float>(p[2]), static_cast<float>(p[3])};
  }
  static Type tableScores(const float* table, Type x, Type y, Mask counts) {
    Type scores = set(0.0F);
    for (int k = 0; k < kLanes; ++k) {
      if (counts[k]) scores[k] = table[(static_cast<int>(x[k]) >> 1) * kScoreTableSide + (static_cast<int>(y[k]) >> 1)];
    }
    return scores;
  }

 private:
  static Type select(Mask mask, Type a, Type b) {
    return bitsAs<Type>((mask & bitsAs<Mask>(a)) | (~mask & bitsAs<Mask>(b)));
  }
};

struct PortableDoubles {
  static constexpr int kLanes = 2;
  typedef double Type __attribute__((vector_size(16)));
  typedef std::int64_t Mask __attribute__((vector_size(16)));
  static Type widen(const float* p) { return Type{static_cast<double>(p[0]), static_cast<double>(p[1])}; }
  static void narrow(float* p, Type value) {
    p[0] = static_cast<float>(value[0]);
    p[1] = static_cast<float>(value[1]);
  }
  static Type set(double value) { return Type{value, value}; }
  static Type add(Type a, Type b) { return a + b; }
  static Type sub(Type a, Type b) { return a - b; }
  static Type mul(Type a, Type b) { return a * b; }
  static Type div(Type a, Type b) { return a / b; }
  static Type atMost(Type high, Type a) {
    const Mask above = high < a;
    return bitsAs<Type>((above & bitsAs<Mask>(high)) | (~above & bitsAs<Mask>(a)));
  }
  static Type magnitude(Type a) { return bitsAs<Type>(bitsAs<Mask>(a) & INT64_MAX); }
  static Type withSignOf(Type sign, Type a) { return bitsAs<Type>(bitsAs<Mask>(a) | (bitsAs<Mask>(sign) & INT64_MIN)); }
  static Type powerOfTwo(Type shifted) { return bitsAs<Type>((bitsAs<Unsigned>(shifted) + 1023) << 52); }

 private:
  typedef std::uint64_t Unsigned __attribute__((vector_size(16)));
};

struct PortableBytes {
  static constexpr int kLanes = 16;
  typedef Ipp8u Type __attribute__((vector_size(16)));
  static Type load(const Ipp8u* p) {
    Type value;
    std::memcpy(&value, p, sizeof(value));
    return value;
  }
  static void store(Ipp8u* p, Type value) { std::memcpy(p, &value, sizeof(value)); }
  static Type set(Ipp8u value) { return Type{} + value; }
  static Type min(Type a, Type b) { return a < b ? a : b; }
  static Type max(Type a, Type b) { return a > b ? a : b; }
  static Type flip(Type a, Type mask) { return a ^ mask; }
};

}  // namespace

void fillVectorKernelsBase(VectorKernels& table) { fillVectorKernels<PortableFloats>(table); }

void fillPatchKernelsBase(PatchKernels& table) {
  fillPatchKernels<PortableFloats, PortableDoubles, PortableBytes>(table);
}
