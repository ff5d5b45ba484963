// Which output belongs to which input.
#ifndef APPS_PORTRAITCUT_OUTPUT_NAMES_H
#define APPS_PORTRAITCUT_OUTPUT_NAMES_H

#include <string>
#include <unordered_map>

#include "input_source.h"
#include "options.h"

// Whether -o names a folder: one that exists, a name that ends in a slash or in no picture ending, or any name when
// there can be several inputs.
bool outputIsFolder(const Options& options);

class OutputNames {
 public:
  explicit OutputNames(const Options& options) : options_(options), isFolder_(outputIsFolder(options)) {}

  // The output's path; empty for commands that write none. Throws Failure if another input has the same.
  std::string nameFor(const Input& input);

 private:
  std::string plainNameFor(const Input& input) const;

  const Options& options_;
  bool isFolder_;
  // Hash of each output's name with its input, which is left out where inputs come in a stream without end.
  std::unordered_map<size_t, std::string> taken_;
};

#endif
