#include "protected_inputs.h"

#include <set>
#include <utility>

namespace {

using FileId = std::pair<dev_t, ino_t>;

std::set<FileId>& inputs() {
  static std::set<FileId> files;
  return files;
}

}  // namespace

void protectInput(const std::string& path) {
  struct stat status;
  if (stat(path.c_str(), &status) == 0) inputs().emplace(status.st_dev, status.st_ino);
}

bool isProtectedInput(const struct stat& status) { return inputs().contains({status.st_dev, status.st_ino}); }
