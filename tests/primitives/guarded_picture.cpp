#include "tests/primitives/guarded_picture.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <map>
#include <new>

namespace {

std::size_t pageBytes() { return static_cast<std::size_t>(sysconf(_SC_PAGESIZE)); }

std::size_t pagesFor(std::size_t bytes) { return (bytes + pageBytes() - 1) / pageBytes() * pageBytes(); }

// Whole pages for `bytes`, between two that may not be touched.
Ipp8u* mapGuarded(std::size_t bytes) {
  void* pages = mmap(nullptr, bytes + 2 * pageBytes(), PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (pages == MAP_FAILED) throw std::bad_alloc();
  Ipp8u* start = static_cast<Ipp8u*>(pages);
  if (mprotect(start + pageBytes(), bytes, PROT_READ | PROT_WRITE) != 0) throw std::bad_alloc();
  return start;
}

// Areas in no picture's use, by their length: a test makes thousands of pictures, and mapping each anew
// takes most of its time.
std::map<std::size_t, std::vector<Ipp8u*>>& spareAreas() {
  static std::map<std::size_t, std::vector<Ipp8u*>> spare;
  return spare;
}

Ipp8u* takeArea(std::size_t bytes) {
  std::vector<Ipp8u*>& spare = spareAreas()[bytes];
  if (spare.empty()) return mapGuarded(bytes);
  Ipp8u* area = spare.back();
  spare.pop_back();
  return area;
}

}  // namespace

void GuardedPicture::GiveBack::operator()(Ipp8u* area) const { spareAreas()[length].push_back(area); }

GuardedPicture::GuardedPicture(IppiSize size, int pixelBytes, Layout layout, std::mt19937& random)
    : size_(size),
      pixelBytes_(pixelBytes),
      step_(size.width * pixelBytes + layout.padding),
      // The last row has no padding: its last pixel touches the guard.
      length_(static_cast<std::size_t>((size.height - 1) * step_ + size.width * pixelBytes)),
      area_(takeArea(pagesFor(length_)), GiveBack{pagesFor(length_)}),
      memory_(area_.get() + pageBytes() + (layout.against == Against::pageAfter ? pagesFor(length_) - length_ : 0)),
      first_(memory_) {
  if (layout.lastRowFirst) {
    first_ += (size.height - 1) * step_;
    step_ = -step_;
  }
  std::generate(memory_, memory_ + length_, [&] { return static_cast<Ipp8u>(random()); });
}

Ipp8u& GuardedPicture::at(int x, int y, int k) const {
  return first_[static_cast<std::ptrdiff_t>(y) * step_ + static_cast<std::ptrdiff_t>(x) * pixelBytes_ + k];
}

void GuardedPicture::setBytes(const std::vector<Ipp8u>& bytes) { std::copy(bytes.begin(), bytes.end(), memory_); }
