// Writes the seeds of a target into a folder: write_seeds TARGET FOLDER.
#include <cstdio>

#include "tests/fuzz/seeds/seeds.h"

int main(int argc, char** argv) {
  if (argc != 3) return std::fprintf(stderr, "write_seeds TARGET FOLDER\n"), 2;
  const std::filesystem::path folder = argv[2];
  std::filesystem::create_directories(folder);
  for (const Seed& seed : seedsOf(argv[1])) {
    const std::string name = folder / ("seed_" + seed.name);
    writeFile(name, seed.bytes);
    if (readFile(name) != seed.bytes) return std::fprintf(stderr, "can't write %s\n", seed.name.c_str()), 1;
  }
  return 0;
}
