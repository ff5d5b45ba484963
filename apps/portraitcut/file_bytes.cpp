#include "file_bytes.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>

#include "descriptor.h"
#include "failure.h"

namespace {

// The library takes sizes of files as 32-bit numbers.
constexpr size_t kMostBytes = UINT32_MAX;
constexpr size_t kFirstBytes = 1 << 16;

// The size of a regular file, a little more so that its end is seen without growing; a first guess for the rest.
size_t expectedBytes(int descriptor) {
  struct stat status;
  if (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode) || status.st_size <= 0) return kFirstBytes;
  return std::min(static_cast<size_t>(status.st_size) + 1, kMostBytes);
}

}  // namespace

void readDescriptor(int descriptor, const std::string& name, std::vector<unsigned char>& bytes) {
  size_t used = 0;
  bytes.resize(expectedBytes(descriptor));
  for (;;) {
    if (used == bytes.size()) {
      if (used >= kMostBytes) throw Failure(name + ": larger than 4 GiB");
      bytes.resize(std::min(2 * used, kMostBytes));
    }
    const ssize_t count = read(descriptor, bytes.data() + used, bytes.size() - used);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) failWithErrno("cannot read " + name, errno);
    if (count == 0) break;
    used += static_cast<size_t>(count);
  }
  bytes.resize(used);
}

void readFile(const std::string& path, std::vector<unsigned char>& bytes) {
  const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC));
  if (!file) failWithErrno("cannot open the file", errno);
  readDescriptor(file.get(), "the file", bytes);
}

void writeDescriptor(int descriptor, const std::string& name, std::span<const unsigned char> bytes) {
  while (!bytes.empty()) {
    const ssize_t count = write(descriptor, bytes.data(), bytes.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) failWithErrno("cannot write " + name, errno);
    bytes = bytes.subspan(static_cast<size_t>(count));
  }
}
