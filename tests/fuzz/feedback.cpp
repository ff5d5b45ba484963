#include "tests/fuzz/feedback.h"

namespace {

// The fuzzer reads this section as counters of its own, and clears it before each input.
[[gnu::section("__libfuzzer_extra_counters")]] std::uint8_t cells[kFeedbackCells];

}  // namespace

void noteEvent(std::uint32_t what, std::uint32_t value) {
  std::uint32_t hash = (what * 0x9E3779B1U) ^ value;
  hash = (hash ^ hash >> 15) * 0x85EBCA6BU;
  std::uint8_t& cell = cells[(hash >> 16) % kFeedbackCells];
  if (cell != 255) ++cell;
}
