// Files that close themselves.
#pragma once

#include <stdio_ext.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <memory>

struct FileCloser {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, FileCloser>;

// `how` has an "e" at its end: a program that another thread starts meanwhile is not to inherit the descriptor.
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

// Drops what is not written yet and, of a regular file, what is. Pipes and devices stay as they are.
inline void emptyFile(std::FILE* file) {
  __fpurge(file);
  if (fileBytes(file) > 0 && ftruncate(fileno(file), 0) != 0) return;
}

// Closes a written file; `whole` tells whether all went well so far. False when anything did not reach it, a full disk
// for instance: the file is then empty, for a part of a picture would pass for a picture with many readers.
inline bool closeWritten(File file, bool whole) {
  const bool good = whole && std::fflush(file.get()) == 0 && std::ferror(file.get()) == 0;
  if (!good) emptyFile(file.get());
  return std::fclose(file.release()) == 0 && good;
}
