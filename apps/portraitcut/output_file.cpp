#include "output_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>

#include "density.h"
#include "descriptor.h"
#include "encode.h"
#include "failure.h"
#include "file_bytes.h"
#include "protected_inputs.h"
#include "run_token.h"

namespace {

bool isStream(const struct stat& status) {
  return S_ISCHR(status.st_mode) || S_ISFIFO(status.st_mode) || S_ISSOCK(status.st_mode);
}

std::string folderOf(const std::string& path) {
  const size_t slash = path.rfind('/');
  return slash == std::string::npos ? "" : path.substr(0, slash + 1);
}

void makeFolder(const std::string& path) {
  const std::string folder = folderOf(path);
  if (folder.empty()) return;
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  if (error) failWithErrno("cannot make the folder " + folder, error.value());
}

// Makes the file, empty, so that no other process writes to the same name.
void claim(const std::string& name) {
  const Descriptor file(open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
  if (!file) failWithErrno("cannot write into the folder", errno);
}

// For file systems without hard links: the name is taken first, then the file put there.
int renameOverClaim(const char* from, const char* to) {
  const Descriptor file(open(to, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
  if (!file) return -1;
  return rename(from, to);
}

int renameToFreeName(const char* from, const char* to) {
  if (renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_NOREPLACE) == 0) return 0;
  if (errno != EINVAL && errno != ENOSYS) return -1;
  if (link(from, to) == 0) return unlink(from);
  return errno == EEXIST ? -1 : renameOverClaim(from, to);
}

void giveName(const std::string& from, const std::string& to, bool force) {
  const int result = force ? rename(from.c_str(), to.c_str()) : renameToFreeName(from.c_str(), to.c_str());
  if (result == 0) return;
  if (errno == EEXIST) throw Failure(to + " exists; --force replaces it");
  failWithErrno("cannot name the output " + to, errno);
}

void writeToStream(const std::string& path, const std::vector<unsigned char>& bytes) {
  const Descriptor stream(open(path.c_str(), O_WRONLY | O_CLOEXEC));
  if (!stream) failWithErrno("cannot open " + path, errno);
  writeDescriptor(stream.get(), path, bytes);
}

void addDensity(const std::string& name, double dotsPerInch) {
  std::vector<unsigned char> bytes;
  readFile(name, bytes);
  const Descriptor file(open(name.c_str(), O_WRONLY | O_TRUNC | O_CLOEXEC));
  if (!file) failWithErrno("cannot write the picture", errno);
  writeDescriptor(file.get(), "the picture", withDensity(std::move(bytes), dotsPerInch));
}

}  // namespace

void refuseExisting(const std::string& path, const std::string& input, bool force) {
  struct stat output;
  struct stat source;
  if (stat(path.c_str(), &output) != 0) {
    if (lstat(path.c_str(), &output) == 0 && !force) throw Failure(path + " exists; --force replaces it");
    return;
  }
  if (isStream(output)) return;
  if (S_ISDIR(output.st_mode)) throw Failure(path + " is a folder");
  const bool isInput =
      stat(input.c_str(), &source) == 0 && source.st_dev == output.st_dev && source.st_ino == output.st_ino;
  if (isInput || isProtectedInput(output)) throw Failure(path + " is an input; inputs are never changed");
  if (!force) throw Failure(path + " exists; --force replaces it");
}

std::string unfinishedName(const std::string& path, Format format, pid_t process) {
  return folderOf(path) + ".portraitcut-" + runToken() + "-" + std::to_string(process) + endingOf(format);
}

void publishPicture(const std::string& path, Format format, const Picture& picture, double dotsPerInch, bool force) {
  struct stat status;
  if (stat(path.c_str(), &status) == 0 && isStream(status)) {
    return writeToStream(path, withDensity(encode(picture, format), dotsPerInch));
  }
  makeFolder(path);
  const std::string unfinished = unfinishedName(path, format, getpid());
  claim(unfinished);
  try {
    saveTo(unfinished, picture);
    if (dotsPerInch > 0) addDensity(unfinished, dotsPerInch);
    giveName(unfinished, path, force);
  } catch (...) {
    unlink(unfinished.c_str());
    throw;
  }
}
