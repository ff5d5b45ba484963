// The line at the foot of a terminal that tells how far a batch is.
#ifndef APPS_PORTRAITCUT_PROGRESS_H
#define APPS_PORTRAITCUT_PROGRESS_H

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

class Progress {
 public:
  // Shows nothing unless standard error is a terminal; `quiet` keeps also the last line back.
  Progress(bool quiet, std::optional<uint64_t> total);

  // How long to wait for the next update in milliseconds, -1 where nothing is shown.
  int interval() const { return shown_ ? 200 : -1; }

  void countDone(bool ok);
  // A file that needs no work.
  void countSkipped() { ++skipped_; }
  uint64_t failed() const { return failed_; }

  // Draws the line anew, at most once in an interval.
  void draw();
  // A line of its own above the progress.
  void say(const std::string& text);
  // Removes the line; after several files tells what became of them, if anybody looks or one failed.
  void finish(bool interrupted);

 private:
  using Clock = std::chrono::steady_clock;

  double seconds() const { return std::chrono::duration<double>(Clock::now() - start_).count(); }
  std::string line() const;
  void clear();

  bool quiet_;
  bool shown_;
  bool drawn_ = false;
  std::optional<uint64_t> total_;
  uint64_t done_ = 0;
  uint64_t failed_ = 0;
  uint64_t skipped_ = 0;
  Clock::time_point start_ = Clock::now();
  Clock::time_point next_ = start_;
};

#endif
