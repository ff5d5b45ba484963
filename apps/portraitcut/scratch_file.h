// A file of our own in the folder for temporary files, gone with the object.
#ifndef APPS_PORTRAITCUT_SCRATCH_FILE_H
#define APPS_PORTRAITCUT_SCRATCH_FILE_H

#include <span>
#include <string>

class ScratchFile {
 public:
  // Made in $TMPDIR, or /tmp, with a name of this ending and these bytes. Throws Failure.
  ScratchFile(const std::string& ending, std::span<const unsigned char> bytes);
  ScratchFile(const ScratchFile&) = delete;
  ScratchFile& operator=(const ScratchFile&) = delete;
  ~ScratchFile();

  const std::string& path() const { return path_; }

 private:
  std::string path_;
};

#endif
