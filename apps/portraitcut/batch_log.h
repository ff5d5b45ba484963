// The log of a batch: a line of JSON for each file, as it is done. A later run can go on where it ends.
#ifndef APPS_PORTRAITCUT_BATCH_LOG_H
#define APPS_PORTRAITCUT_BATCH_LOG_H

#include <string>
#include <unordered_set>

#include "descriptor.h"
#include "options.h"

class BatchLog {
 public:
  // Opens the log of the options, if they name one. A log that exists is read and gone on with if they say resume,
  // emptied if they say force. Throws Failure, also if another run writes it.
  explicit BatchLog(const Options& options);

  // Whether an earlier run did this input with the same settings and its outputs are there.
  bool isDone(const std::string& input) const { return input != "-" && done_.contains(input); }

  // Adds a line, newline included, in one piece. Throws Failure.
  void write(const std::string& line);

 private:
  void readDone(const Options& options);
  void takeLine(const std::string& line, const std::string& settings);

  std::string path_;
  Descriptor file_;
  std::unordered_set<std::string> done_;
};

#endif
