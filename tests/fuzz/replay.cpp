// Gives a target its seeds, as they are made, and the files of its kept corpus: fuzz_replay TARGET FOLDER.
#include <cstdio>
#include <map>

#include "tests/fuzz/seeds/seeds.h"

extern "C" {
using Target = int (*)(const std::uint8_t*, std::size_t);
int replay_jpeg(const std::uint8_t* data, std::size_t size);
int replay_png(const std::uint8_t* data, std::size_t size);
int replay_bmp(const std::uint8_t* data, std::size_t size);
int replay_buffers(const std::uint8_t* data, std::size_t size);
int replay_geometry(const std::uint8_t* data, std::size_t size);
int replay_grid(const std::uint8_t* data, std::size_t size);
int replay_models(const std::uint8_t* data, std::size_t size);
int replay_detect(const std::uint8_t* data, std::size_t size);
int replay_calls(const std::uint8_t* data, std::size_t size);
}

namespace {

const std::map<std::string, Target> kTargets = {
    {"jpeg", replay_jpeg},       {"png", replay_png},           {"bmp", replay_bmp},
    {"buffers", replay_buffers}, {"geometry", replay_geometry}, {"grid", replay_grid},
    {"models", replay_models},   {"detect", replay_detect},     {"calls", replay_calls}};

// A folder is a corpus, in any order; a file is one input.
Seeds keptIn(const std::filesystem::path& path) {
  std::vector<std::filesystem::path> files;
  if (std::filesystem::is_directory(path)) {
    for (const auto& entry : std::filesystem::directory_iterator(path)) files.push_back(entry.path());
  } else if (std::filesystem::exists(path)) {
    files.push_back(path);
  }
  Seeds kept;
  for (const auto& name : files) kept.push_back({name.filename(), readFile(name)});
  return kept;
}

}  // namespace

int main(int argc, char** argv) {
  const auto target = argc == 3 ? kTargets.find(argv[1]) : kTargets.end();
  if (target == kTargets.end()) return std::fprintf(stderr, "fuzz_replay TARGET FOLDER\n"), 2;
  Seeds inputs = seedsOf(argv[1]);
  const Seeds kept = keptIn(argv[2]);
  inputs.insert(inputs.end(), kept.begin(), kept.end());
  for (const Seed& input : inputs) {
    // Said first: it is the last line before a crash.
    std::printf("%s, %zu bytes\n", input.name.c_str(), input.bytes.size());
    std::fflush(stdout);
    target->second(input.bytes.data(), input.bytes.size());
  }
  std::printf("%zu inputs, %zu of them kept ones\n", inputs.size(), kept.size());
  return inputs.empty() ? 1 : 0;
}
