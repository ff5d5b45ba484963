#include "folder_walk.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "encode.h"
#include "failure.h"

namespace fs = std::filesystem;

namespace {

class Walk {
 public:
  Walk(bool recursive, const std::string& leaveOut, std::vector<Input>& inputs)
      : recursive_(recursive), leaveOut_(leaveOut), inputs_(inputs) {}

  void visit(const std::string& folder, const std::string& mirrored) {
    std::error_code error;
    std::vector<fs::directory_entry> entries;
    for (fs::directory_iterator next(folder, error), end; !error && next != end; next.increment(error)) {
      entries.push_back(*next);
    }
    if (error) failWithErrno("cannot read the folder " + folder, error.value());
    std::sort(entries.begin(), entries.end());
    for (const fs::directory_entry& entry : entries) take(entry, mirrored);
  }

 private:
  void take(const fs::directory_entry& entry, const std::string& above) {
    const std::string name = entry.path().filename().native();
    const std::string mirrored = above.empty() ? name : above + '/' + name;
    std::error_code error;
    if (name.front() == '.') return;
    if (entry.is_directory(error)) {
      const bool follow = recursive_ && !entry.is_symlink(error) && !isLeftOut(entry.path());
      if (follow) visit(entry.path().native(), mirrored);
    } else if (formatOfName(name) != Format::kAuto) {
      inputs_.push_back({entry.path().native(), mirrored});
    }
  }

  bool isLeftOut(const fs::path& folder) const {
    std::error_code error;
    return !leaveOut_.empty() && fs::equivalent(folder, leaveOut_, error);
  }

  bool recursive_;
  const std::string& leaveOut_;
  std::vector<Input>& inputs_;
};

}  // namespace

bool isFolder(const std::string& path) {
  std::error_code error;
  return fs::is_directory(path, error);
}

void walkFolder(const std::string& folder, bool recursive, const std::string& leaveOut, std::vector<Input>& inputs) {
  Walk(recursive, leaveOut, inputs).visit(folder, "");
}
