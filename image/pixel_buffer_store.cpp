#include "image/pixel_buffer_store.h"

#include <malloc.h>

#include <atomic>
#include <cstdlib>

#include "image/zeroed_buffer.h"

namespace {

constexpr std::size_t kMiB = std::size_t{1} << 20;
// Smaller buffers the C library keeps by itself.
constexpr std::size_t kSmallestKept = 2 * kMiB;
// A picture of 20 megapixels without alpha; what is larger is rare, and much to hold on to.
constexpr std::size_t kLargestKept = 64 * kMiB;
constexpr std::size_t kMostKept = 128 * kMiB;
// The matching of an overlay holds seven buffers at once.
constexpr std::size_t kPlaces = 8;

// Each holds a buffer or null. Whoever exchanges a buffer out owns it, so that threads need no lock.
std::atomic<void*> spare[kPlaces];
std::atomic<std::size_t> bytesKept;
std::atomic<std::size_t> nextReplaced;

// Null where the place is empty.
void* takeFrom(std::atomic<void*>& place) {
  void* const buffer = place.exchange(nullptr, std::memory_order_acq_rel);
  if (buffer != nullptr) bytesKept -= malloc_usable_size(buffer);
  return buffer;
}

// False, and the buffer still the caller's, where the place is taken.
bool putInto(std::atomic<void*>& place, void* buffer) {
  const std::size_t bytes = malloc_usable_size(buffer);
  bytesKept += bytes;
  void* none = nullptr;
  if (place.compare_exchange_strong(none, buffer, std::memory_order_acq_rel)) return true;
  bytesKept -= bytes;
  return false;
}

// A buffer of at least this size that is not more than twice as large.
void* takeSpare(std::size_t bytes) {
  for (std::atomic<void*>& place : spare) {
    void* const buffer = takeFrom(place);
    if (buffer == nullptr) continue;
    const std::size_t kept = malloc_usable_size(buffer);
    if (kept >= bytes && kept / 2 <= bytes) return buffer;
    if (!putInto(place, buffer)) std::free(buffer);
  }
  return nullptr;
}

}  // namespace

TPixelBuffer takePixelBuffer(std::size_t bytes) {
  if (bytes >= kSmallestKept && bytes <= kLargestKept) {
    if (void* const buffer = takeSpare(bytes)) return {buffer, false};
  }
  return {allocZeroedBuffer(bytes), true};
}

void givePixelBuffer(void* memory) {
  const std::size_t bytes = memory == nullptr ? 0 : malloc_usable_size(memory);
  if (bytes < kSmallestKept || bytes > kLargestKept + kMiB) return std::free(memory);
  // Others make room, in turn.
  for (std::size_t i = 0; i < kPlaces && bytesKept + bytes > kMostKept; ++i) {
    std::free(takeFrom(spare[nextReplaced++ % kPlaces]));
  }
  for (std::atomic<void*>& place : spare) {
    if (putInto(place, memory)) return;
  }
  std::atomic<void*>& place = spare[nextReplaced++ % kPlaces];
  std::free(takeFrom(place));
  if (!putInto(place, memory)) std::free(memory);
}

void releaseSpareBuffers() {
  for (std::atomic<void*>& place : spare) std::free(takeFrom(place));
}
