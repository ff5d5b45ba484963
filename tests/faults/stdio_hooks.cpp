#include "stdio_hooks.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <unistd.h>

namespace {

int opens, reads, eventOpen, eventRead;
std::function<void()> openEvent;
std::function<void(std::FILE*)> readEvent;

template <class TFunction>
TFunction* next(const char* name) {
  return reinterpret_cast<TFunction*>(dlsym(RTLD_NEXT, name));
}

}  // namespace

void BeforeOpen(int n, std::function<void()> event) {
  opens = 0;
  eventOpen = n;
  openEvent = std::move(event);
}

void BeforeRead(int n, std::function<void(std::FILE*)> event) {
  reads = 0;
  eventRead = n;
  readEvent = std::move(event);
}

int StopEvents() {
  eventOpen = eventRead = 0;
  return reads;
}

// Reading from a folder's descriptor is refused.
void BreakReads(std::FILE* file) {
  const int folder = open("/", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  dup2(folder, fileno(file));
  close(folder);
}

// Visible, so that the shared libraries find these first.
#pragma GCC visibility push(default)
extern "C" {

std::FILE* fopen(const char* name, const char* mode) {
  static auto* const original = next<std::FILE*(const char*, const char*)>("fopen");
  if (++opens == eventOpen) openEvent();
  return original(name, mode);
}

std::size_t fread(void* bytes, std::size_t size, std::size_t count, std::FILE* file) {
  static auto* const original = next<std::size_t(void*, std::size_t, std::size_t, std::FILE*)>("fread");
  if (++reads == eventRead) readEvent(file);
  return original(bytes, size, count, file);
}
}
#pragma GCC visibility pop
