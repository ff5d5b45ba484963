#include "allocations.h"

#include <atomic>
#include <cerrno>
#include <cstddef>

// The C library's own allocator under the names that stay reachable once malloc is replaced.
extern "C" {
void* __libc_malloc(std::size_t);
void* __libc_calloc(std::size_t, std::size_t);
void* __libc_realloc(void*, std::size_t);
void* __libc_memalign(std::size_t, std::size_t);
void __libc_free(void*);
}

namespace {

struct TWatch {
  bool on = false;
  TFailure failure = TFailure::one;
  long failAt = 0;
  long asked = 0;
};

thread_local constinit TWatch watch;
constinit std::atomic<long> liveBlocks = 0;

bool refused() {
  if (!watch.on) return false;
  ++watch.asked;
  if (watch.failAt == 0) return false;
  const bool refuse = watch.failure == TFailure::one ? watch.asked == watch.failAt : watch.asked >= watch.failAt;
  if (refuse) errno = ENOMEM;
  return refuse;
}

void* counted(void* block) {
  if (block != nullptr) liveBlocks.fetch_add(1, std::memory_order_relaxed);
  return block;
}

}  // namespace

void FailAllocations(long n, TFailure failure) { watch = {true, failure, n, 0}; }

long StopFailing() {
  watch.on = false;
  return watch.asked;
}

long LiveBlocks() { return liveBlocks.load(std::memory_order_relaxed); }

// Visible, so that the shared libraries find these first.
#pragma GCC visibility push(default)
extern "C" {

void* malloc(std::size_t bytes) noexcept { return refused() ? nullptr : counted(__libc_malloc(bytes)); }

void* calloc(std::size_t count, std::size_t bytes) noexcept {
  return refused() ? nullptr : counted(__libc_calloc(count, bytes));
}

void* realloc(void* block, std::size_t bytes) noexcept {
  if (refused()) return nullptr;
  void* const moved = __libc_realloc(block, bytes);
  if (block == nullptr) return counted(moved);
  // A size of 0 frees.
  if (moved == nullptr && bytes == 0) liveBlocks.fetch_sub(1, std::memory_order_relaxed);
  return moved;
}

void* memalign(std::size_t alignment, std::size_t bytes) noexcept {
  return refused() ? nullptr : counted(__libc_memalign(alignment, bytes));
}

void* aligned_alloc(std::size_t alignment, std::size_t bytes) noexcept { return memalign(alignment, bytes); }

int posix_memalign(void** block, std::size_t alignment, std::size_t bytes) noexcept {
  void* const made = memalign(alignment, bytes);
  if (made == nullptr) return ENOMEM;
  *block = made;
  return 0;
}

void free(void* block) noexcept {
  if (block != nullptr) liveBlocks.fetch_sub(1, std::memory_order_relaxed);
  __libc_free(block);
}
}
#pragma GCC visibility pop
