// A picture for tests of the primitives: it stands against a page that may not be touched, so that a read or
// a write one byte outside stops the program at every level and without a sanitizer.
#pragma once

#include <cstddef>
#include <memory>
#include <random>
#include <vector>

#include "primitives/ippdefs.h"

enum class Against { pageBefore, pageAfter };

// How rows lie in memory: bytes of padding between them, and whether row 0 stands last (a negative step).
struct Layout {
  int padding;
  Against against;
  bool lastRowFirst;
};

class GuardedPicture {
 public:
  GuardedPicture(IppiSize size, int pixelBytes, Layout layout, std::mt19937& random);

  // None: a null pointer with a step.
  explicit GuardedPicture(int step) : size_{1, 1}, pixelBytes_(1), step_(step), area_(nullptr, GiveBack{0}) {}

  Ipp8u* pixels() const { return first_; }
  int step() const { return step_; }
  IppiSize size() const { return size_; }
  Ipp8u& at(int x, int y, int k) const;
  // The whole area with its padding.
  std::vector<Ipp8u> bytes() const { return {memory_, memory_ + length_}; }
  void setBytes(const std::vector<Ipp8u>& bytes);

 private:
  struct GiveBack {
    std::size_t length;
    void operator()(Ipp8u* area) const;
  };

  IppiSize size_;
  int pixelBytes_;
  int step_;
  std::size_t length_ = 0;
  std::unique_ptr<Ipp8u, GiveBack> area_;
  Ipp8u* memory_ = nullptr;
  Ipp8u* first_ = nullptr;
};
