#include "image/zeroed_buffer.h"

#include <sys/mman.h>

#include <cstdint>
#include <cstdlib>

namespace {

constexpr std::size_t kHugePage = std::size_t{2} << 20;
// From here on there is at least one whole huge page inside the buffer, wherever it begins.
constexpr std::size_t kWorthAsking = 2 * kHugePage;

// A mere wish: what the system answers makes no difference to the content.
void askForHugePages(void* buffer, std::size_t bytes) {
#ifdef MADV_HUGEPAGE
  const auto address = reinterpret_cast<std::uintptr_t>(buffer);
  const std::size_t before = (kHugePage - address % kHugePage) % kHugePage;
  const std::size_t inside = (bytes - before) / kHugePage * kHugePage;
  madvise(static_cast<char*>(buffer) + before, inside, MADV_HUGEPAGE);
#else
  (void)buffer;
  (void)bytes;
#endif
}

}  // namespace

void* allocZeroedBuffer(std::size_t bytes) {
  void* const buffer = std::calloc(bytes, 1);
  if (buffer != nullptr && bytes >= kWorthAsking) askForHugePages(buffer, bytes);
  return buffer;
}
