#include "output_names.h"

#include "encode.h"
#include "failure.h"
#include "folder_walk.h"

namespace {

bool writesPictures(Command command) { return command == Command::kCut || command == Command::kAnnotate; }

std::string withEnding(const std::string& name, Format format) {
  const Format present = formatOfName(name);
  if (present != Format::kAuto && (format == Format::kAuto || format == present)) return name;
  const std::string stem = present == Format::kAuto ? name : name.substr(0, name.rfind('.'));
  return stem + endingOf(format);
}

}  // namespace

bool outputIsFolder(const Options& options) {
  const std::string& path = options.output.path;
  if (path == "-") return false;
  const bool oneFile = options.input.listFile.empty() && options.input.paths.size() == 1 &&
                       (options.input.paths[0] == "-" || !isFolder(options.input.paths[0]));
  return !oneFile || path.ends_with('/') || formatOfName(path) == Format::kAuto || isFolder(path);
}

std::string OutputNames::plainNameFor(const Input& input) const {
  const std::string& path = options_.output.path;
  if (!isFolder_) return path;
  const std::string name = input.path == "-" ? "stdin" : input.mirrored;
  return path + (path.ends_with('/') ? "" : "/") + withEnding(name, options_.output.format);
}

std::string OutputNames::nameFor(const Input& input) {
  if (!writesPictures(options_.command) || options_.input.pictureStream) return "";
  std::string name = plainNameFor(input);
  const auto [place, isNew] = taken_.emplace(name, input.path);
  if (!isNew) throw Failure(name + " is also the output of " + place->second);
  return name;
}
