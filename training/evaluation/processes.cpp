#include "training/evaluation/processes.h"

#include <sys/wait.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <exception>
#include <memory>
#include <stdexcept>

namespace evaluation {

namespace {

struct Closer {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using TemporaryFile = std::unique_ptr<std::FILE, Closer>;

// What a child leaves behind: an index, a length and so many bytes for each call.
struct Head {
  std::uint64_t index;
  std::uint64_t length;
};

struct Child {
  pid_t id = -1;
  TemporaryFile results;
};

bool workInChild(std::FILE* results, std::size_t first, std::size_t count, unsigned step,
                 const std::function<std::string(std::size_t)>& work) {
  for (std::size_t i = first; i < count; i += step) {
    const std::string bytes = work(i);
    const Head head{i, bytes.size()};
    if (std::fwrite(&head, sizeof head, 1, results) != 1) return false;
    if (std::fwrite(bytes.data(), 1, bytes.size(), results) != bytes.size()) return false;
  }
  return std::fflush(results) == 0;
}

Child startChild(std::size_t first, std::size_t count, unsigned step,
                 const std::function<std::string(std::size_t)>& work) {
  Child child{-1, TemporaryFile(std::tmpfile())};
  if (!child.results) throw std::runtime_error("cannot make a temporary file");
  std::fflush(nullptr);  // else the child would write out this process's buffers once more
  child.id = fork();
  if (child.id < 0) throw std::runtime_error("cannot start a process");
  if (child.id > 0) return child;
  bool good = false;
  try {
    good = workInChild(child.results.get(), first, count, step, work);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
  }
  std::fflush(stdout);
  _exit(good ? 0 : 1);
}

bool finished(const Child& child) {
  int status = 0;
  return waitpid(child.id, &status, 0) == child.id && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

void readResults(std::FILE* file, std::vector<std::string>& results) {
  std::rewind(file);
  for (Head head; std::fread(&head, sizeof head, 1, file) == 1;) {
    std::string& bytes = results.at(head.index);
    bytes.resize(head.length);
    if (std::fread(bytes.data(), 1, head.length, file) != head.length)
      throw std::runtime_error("a result is cut short");
  }
}

}  // namespace

std::vector<std::string> forEachIndexInProcesses(std::size_t count, unsigned processes,
                                                 const std::function<std::string(std::size_t)>& work) {
  std::vector<std::string> results(count);
  if (processes <= 1) {
    for (std::size_t i = 0; i < count; ++i) results[i] = work(i);
    return results;
  }
  std::vector<Child> children;
  for (unsigned p = 0; p < processes; ++p) children.push_back(startChild(p, count, processes, work));
  bool good = true;
  for (const Child& child : children) good &= finished(child);
  if (!good) throw std::runtime_error("a working process failed");
  for (const Child& child : children) readResults(child.results.get(), results);
  return results;
}

}  // namespace evaluation
