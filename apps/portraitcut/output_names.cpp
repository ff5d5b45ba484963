#include "output_names.h"

#include <filesystem>
#include <system_error>

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
  if (!oneFile || path.ends_with('/') || isFolder(path)) return true;
  // A name without a picture's ending is a folder to be made, unless a file or a device has it.
  std::error_code error;
  return formatOfName(path) == Format::kAuto && !std::filesystem::exists(path, error);
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
  const bool listed = options_.input.listFile.empty();
  const auto [place, isNew] = taken_.emplace(std::hash<std::string>()(name), listed ? input.path : "");
  if (!isNew) throw Failure(name + " is also the output of " + (listed ? place->second : "an earlier input"));
  return name;
}
