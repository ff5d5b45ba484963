// Writes the seeds of a target into a folder: write_seeds TARGET FOLDER.
#include <cstdio>
#include <filesystem>
#include <fstream>

#include "tests/fuzz/seeds/seeds.h"

int main(int argc, char** argv) {
  if (argc != 3) return std::fprintf(stderr, "write_seeds TARGET FOLDER\n"), 2;
  const std::filesystem::path folder = argv[2];
  std::filesystem::create_directories(folder);
  for (const Seed& seed : seedsOf(argv[1])) {
    std::ofstream file(folder / ("seed_" + seed.name), std::ios::binary);
    file.write(reinterpret_cast<const char*>(seed.bytes.data()), static_cast<std::streamsize>(seed.bytes.size()));
    if (!file) return std::fprintf(stderr, "can't write %s\n", seed.name.c_str()), 1;
  }
  return 0;
}
