#include "image/pixel_buffer_store.h"

#include <atomic>
#include <cstdlib>
#include <cstring>

#include "image/zeroed_buffer.h"

namespace {

constexpr std::size_t kMiB = std::size_t{1} << 20;
// Smaller buffers the C library keeps by itself.
constexpr std::size_t kSmallestKept = 4 * kMiB;
// Holds 12 megapixels with alpha, or 20 without.
constexpr std::size_t kLargestKept = 64 * kMiB;
// A picture and its gray copy.
constexpr unsigned kPlaces = 2;

// Each holds a buffer, whose first bytes tell its size, or null. Whoever exchanges a buffer out owns it, so that
// threads need no lock.
std::atomic<void*> spare[kPlaces];
std::atomic<unsigned> nextReplaced;

std::size_t sizeOf(const void* buffer) {
  std::size_t bytes;
  std::memcpy(&bytes, buffer, sizeof(bytes));
  return bytes;
}

bool putInto(std::atomic<void*>& place, void* buffer) {
  void* none = nullptr;
  return place.compare_exchange_strong(none, buffer, std::memory_order_acq_rel);
}

// A buffer of at least this size that is not more than twice as large.
void* takeSpare(std::size_t bytes) {
  for (std::atomic<void*>& place : spare) {
    void* const buffer = place.exchange(nullptr, std::memory_order_acq_rel);
    if (buffer == nullptr) continue;
    const std::size_t kept = sizeOf(buffer);
    if (kept >= bytes && kept / 2 <= bytes) return buffer;
    if (!putInto(place, buffer)) std::free(buffer);
  }
  return nullptr;
}

}  // namespace

TPixelBuffer takePixelBuffer(std::size_t bytes) {
  if (bytes >= kSmallestKept / 2 && bytes <= kLargestKept) {
    if (void* const buffer = takeSpare(bytes)) return {buffer, false};
  }
  return {allocZeroedBuffer(bytes), true};
}

void givePixelBuffer(void* memory, std::size_t bytes) {
  if (memory == nullptr) return;
  if (bytes < kSmallestKept || bytes > kLargestKept) {
    std::free(memory);
    return;
  }
  std::memcpy(memory, &bytes, sizeof(bytes));
  for (std::atomic<void*>& place : spare) {
    if (putInto(place, memory)) return;
  }
  std::free(spare[nextReplaced++ % kPlaces].exchange(memory, std::memory_order_acq_rel));
}

void releaseSpareBuffers() {
  for (std::atomic<void*>& place : spare) std::free(place.exchange(nullptr, std::memory_order_acq_rel));
}
