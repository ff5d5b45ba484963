#include "scratch_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

#include "descriptor.h"
#include "failure.h"
#include "file_bytes.h"

ScratchFile::ScratchFile(const std::string& ending, std::span<const unsigned char> bytes) {
  const char* folder = std::getenv("TMPDIR");
  path_ = std::string(folder != nullptr && *folder != 0 ? folder : "/tmp") + "/portraitcut-XXXXXX" + ending;
  const Descriptor file(mkostemps(path_.data(), static_cast<int>(ending.size()), O_CLOEXEC));
  if (!file) failWithErrno("cannot make a temporary file", errno);
  try {
    writeDescriptor(file.get(), "a temporary file", bytes);
  } catch (...) {
    unlink(path_.c_str());
    throw;
  }
}

ScratchFile::~ScratchFile() { unlink(path_.c_str()); }
