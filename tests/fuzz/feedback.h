// Tells the fuzzer what it can't see: libjpeg and libpng are not built for it, so an input that takes a new way through
// them would look like any other.
#pragma once

#include <cstdint>

constexpr unsigned kFeedbackCells = 4096;

// Counts one more event of the kind that the numbers name. Without a fuzzer it does nothing of effect.
void noteEvent(std::uint32_t what, std::uint32_t value);
