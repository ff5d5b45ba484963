// Grids as text files.
#include <cctype>
#include <cstdio>
#include <cstring>
#include <memory>

#include "features/TGrid.h"

namespace {

struct TFileCloser {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using TFile = std::unique_ptr<std::FILE, TFileCloser>;

TFile open(const char* path, const char* mode) { return TFile(std::fopen(path, mode)); }

// 0 where there is no number. Wider than int, so that a count beyond int is seen to be too large.
long long readCount(std::FILE* file) {
  long long count = 0;
  return std::fscanf(file, "%lld", &count) == 1 ? count : 0;
}

// Whether the next word is "Size", in any case of letters.
bool readSizeWord(std::FILE* file) {
  char word[1024] = "";
  if (std::feof(file) || std::fscanf(file, "%1023s", word) != 1) return false;
  for (char* c = word; *c != 0; ++c) *c = static_cast<char>(std::toupper(static_cast<unsigned char>(*c)));
  return std::strcmp(word, "SIZE") == 0;
}

}  // namespace

int TGrid::SaveToFileInt(const char* path, int width, int height) const {
  TFile file = open(path, "w");
  if (file == nullptr) return -1;
  std::fprintf(file.get(), "%d\n", NodeCount());
  for (const TSPoint& node : Nodes) {
    std::fprintf(file.get(), "%f %f\n", static_cast<double>(node.x), static_cast<double>(node.y));
  }
  std::fprintf(file.get(), "Size\n%d %d\n", width, height);
  const bool failed = std::ferror(file.get()) != 0;
  return std::fclose(file.release()) != 0 || failed ? -1 : 0;
}

int TGrid::LoadFromFileInt(const char* path, int& width, int& height) {
  const TFile file = open(path, "r");
  if (file == nullptr) return -1;
  const long long count = readCount(file.get());
  if (count > kMaxNodesInFile) return -1;
  Clear();
  for (long long n = 0; n < count; ++n) {
    TSPoint node = {0, 0};
    if (std::fscanf(file.get(), "%f %f", &node.x, &node.y) == EOF) node = {0, 0};
    AddNode(node);
  }
  if (readSizeWord(file.get()) && std::fscanf(file.get(), "%d %d", &width, &height) == EOF) return 0;
  return 0;
}
