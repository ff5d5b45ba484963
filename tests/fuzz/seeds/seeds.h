// The inputs that fuzzing starts from, made anew each time: the same bytes on every machine with the same libjpeg.
#pragma once

#include "tests/files/files.h"

struct Seed {
  std::string name;
  Bytes bytes;
};
using Seeds = std::vector<Seed>;

Seeds jpegSeeds();
Seeds pngSeeds();
Seeds bmpSeeds();
Seeds gridSeeds();
Seeds detectSeeds();
// For targets that read their input as choices: bytes of no meaning, of several lengths.
Seeds choiceSeeds(const std::string& target);

// Those of a target by its name ("jpeg", ...).
Seeds seedsOf(const std::string& target);

// Typical damage to a file of any format: cut short at several places, bytes missing, doubled and changed.
void addDamaged(Seeds& seeds, Seed whole);
