// Inputs that fuzzing starts from, made anew each time, for the targets that read their input as choices. Those of the
// files' formats are kept in the corpus, as seed_*: files of every form that the formats have, and with every part
// moved, doubled, lost and lying.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

using Bytes = std::vector<std::uint8_t>;

struct Seed {
  std::string name;
  Bytes bytes;
};
using Seeds = std::vector<Seed>;

Seeds detectSeeds();
// Bytes of no meaning, of several lengths.
Seeds choiceSeeds(const std::string& target);

// Those of a target by its name ("calls", ...); none for a format.
Seeds seedsOf(const std::string& target);
