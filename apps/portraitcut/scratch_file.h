// A file of our own in the folder for temporary files, gone with the object.
#ifndef APPS_PORTRAITCUT_SCRATCH_FILE_H
#define APPS_PORTRAITCUT_SCRATCH_FILE_H

#include <sys/types.h>

#include <span>
#include <string>

#include "options.h"

class ScratchFile {
 public:
  // Made with these bytes; a process can have one of each format at a time. Throws Failure.
  ScratchFile(Format format, std::span<const unsigned char> bytes);
  ScratchFile(const ScratchFile&) = delete;
  ScratchFile& operator=(const ScratchFile&) = delete;
  ~ScratchFile();

  const std::string& path() const { return path_; }

 private:
  std::string path_;
};

// The name in $TMPDIR, or /tmp, that a process's file of this format has; to be removed if it dies.
std::string scratchName(Format format, pid_t process);

#endif
