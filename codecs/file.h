// Files that close themselves.
#pragma once

#include <sys/stat.h>

#include <cstdio>
#include <memory>

struct FileCloser {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, FileCloser>;

inline File openFile(const char* name, const char* how) {
  return File(name == nullptr ? nullptr : std::fopen(name, how));
}

constexpr long long kUnknownBytes = -1;

// Bytes of a regular file; kUnknownBytes for pipes and the like.
inline long long fileBytes(std::FILE* file) {
  struct stat about;
  if (fstat(fileno(file), &about) != 0 || !S_ISREG(about.st_mode)) return kUnknownBytes;
  return about.st_size;
}

// Closes a written file. False when anything did not reach it, a full disk for instance.
inline bool closeWritten(File file) {
  const bool good = std::fflush(file.get()) == 0 && std::ferror(file.get()) == 0;
  return std::fclose(file.release()) == 0 && good;
}
