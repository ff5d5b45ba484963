#include "input_source.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>

#include "descriptor.h"
#include "failure.h"
#include "folder_walk.h"
#include "protected_inputs.h"

namespace {

std::string fileName(const std::string& path) {
  const size_t slash = path.rfind('/');
  return slash == std::string::npos ? path : path.substr(slash + 1);
}

// A path below `base`, or a relative one of a list, is mirrored with its folders; any other by its last part.
std::string mirroredName(const std::string& path, const std::string& base, bool keepRelative) {
  namespace fs = std::filesystem;
  if (base.empty() && (!keepRelative || path.starts_with('/'))) return fileName(path);
  const fs::path relative = base.empty() ? fs::path(path).lexically_normal() : fs::path(path).lexically_relative(base);
  if (relative.empty() || *relative.begin() == ".." || relative == ".") return fileName(path);
  return relative.native();
}

constexpr size_t kLongestLine = size_t{1} << 30;

class ListedInputs : public InputSource {
 public:
  explicit ListedInputs(const Options& options) {
    for (const std::string& path : options.input.paths) {
      if (path != "-" && isFolder(path)) {
        walkFolder(path, options.input.recursive, options.output.path, inputs_);
      } else {
        inputs_.push_back({path, mirroredName(path, options.input.base, false)});
      }
    }
  }

  std::optional<Input> next() override {
    if (ended()) return std::nullopt;
    return inputs_[given_++];
  }
  bool ended() const override { return given_ == inputs_.size(); }
  std::optional<uint64_t> total() const override { return inputs_.size(); }
  void protectAll() const override {
    for (const Input& input : inputs_) protectInput(input.path);
  }

 private:
  std::vector<Input> inputs_;
  size_t given_ = 0;
};

// Lines of a file or a pipe, as they come.
class StreamedInputs : public InputSource {
 public:
  explicit StreamedInputs(const InputOptions& options)
      : base_(options.base), separator_(options.nullSeparated ? '\0' : '\n'), areNames_(!options.pictureStream) {
    if (options.pictureStream || options.listFile == "-") {
      descriptor_ = STDIN_FILENO;
      return;
    }
    file_ = Descriptor(open(options.listFile.c_str(), O_RDONLY | O_CLOEXEC));
    if (!file_) failWithErrno("cannot open " + options.listFile, errno);
    descriptor_ = file_.get();
  }

  std::optional<Input> next() override {
    while (const std::optional<std::string> line = takeLine()) {
      if (line->empty()) continue;
      return Input{*line, areNames_ ? mirroredName(*line, base_, true) : ""};
    }
    return std::nullopt;
  }
  bool ended() const override { return closed_ && at_ == bytes_.size(); }
  int descriptor() const override { return closed_ ? -1 : descriptor_; }

  void readSome() override {
    char part[1 << 16];
    const ssize_t count = read(descriptor_, part, sizeof part);
    if (count < 0 && errno == EINTR) return;
    if (count < 0) failWithErrno("cannot read the list of inputs", errno);
    if (count == 0) closed_ = true;
    bytes_.append(part, static_cast<size_t>(count));
    if (bytes_.size() > kLongestLine) throw Failure("a line of the input is longer than 1 GiB");
  }

 private:
  std::optional<std::string> takeLine() {
    const size_t end = bytes_.find(separator_, searched_);
    if (end == std::string::npos && !(closed_ && at_ < bytes_.size())) {
      bytes_.erase(0, at_);
      at_ = 0;
      searched_ = bytes_.size();
      return std::nullopt;
    }
    const size_t stop = end == std::string::npos ? bytes_.size() : end;
    std::string line = bytes_.substr(at_, stop - at_);
    at_ = searched_ = end == std::string::npos ? stop : stop + 1;
    return line;
  }

  std::string base_;
  char separator_;
  bool areNames_;
  Descriptor file_;
  int descriptor_ = -1;
  bool closed_ = false;
  std::string bytes_;
  size_t at_ = 0;        // where the next line begins
  size_t searched_ = 0;  // before this there is no separator that was not taken
};

}  // namespace

std::unique_ptr<InputSource> makeInputSource(const Options& options) {
  if (options.input.pictureStream || !options.input.listFile.empty()) {
    return std::make_unique<StreamedInputs>(options.input);
  }
  return std::make_unique<ListedInputs>(options);
}
