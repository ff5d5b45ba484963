#include "scratch_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

#include "descriptor.h"
#include "encode.h"
#include "failure.h"
#include "file_bytes.h"
#include "run_token.h"

ScratchFile::ScratchFile(Format format, std::span<const unsigned char> bytes) : path_(scratchName(format, getpid())) {
  // Everybody may write into the folder: whatever has the name already, a link included, is not ours.
  const Descriptor file(open(path_.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
  if (!file) failWithErrno("cannot make a temporary file", errno);
  try {
    writeDescriptor(file.get(), "a temporary file", bytes);
  } catch (...) {
    unlink(path_.c_str());
    throw;
  }
}

ScratchFile::~ScratchFile() { unlink(path_.c_str()); }

std::string scratchName(Format format, pid_t process) {
  const char* folder = std::getenv("TMPDIR");
  return std::string(folder != nullptr && *folder != 0 ? folder : "/tmp") + "/portraitcut-" + runToken() + "-" +
         std::to_string(process) + endingOf(format);
}
