// Where the files of a batch come from.
#ifndef APPS_PORTRAITCUT_INPUT_SOURCE_H
#define APPS_PORTRAITCUT_INPUT_SOURCE_H

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "options.h"

// A file and the name under which an output folder mirrors it.
struct Input {
  std::string path;
  std::string mirrored;  // relative, without ".."
};

class InputSource {
 public:
  virtual ~InputSource() = default;
  // The next file, if there is one at hand.
  virtual std::optional<Input> next() = 0;
  // Whether all have been given out.
  virtual bool ended() const = 0;
  // How many there are in all, if that is known.
  virtual std::optional<uint64_t> total() const { return std::nullopt; }
  // The descriptor whose input next() waits for, -1 if none.
  virtual int descriptor() const { return -1; }
  // Protects all inputs that are known.
  virtual void protectAll() const {}
  // Takes in what can be read there.
  virtual void readSome() {}
};

// The files of the command line, folders walked, or the lines of a list. Throws Failure.
std::unique_ptr<InputSource> makeInputSource(const Options& options);

#endif
