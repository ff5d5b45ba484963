#include "progress.h"

#include <unistd.h>

#include <cstdio>

namespace {

// "4:07" or "2:04:07".
std::string clockText(double seconds) {
  const auto whole = static_cast<unsigned long long>(seconds + 0.5);
  char text[40];
  if (whole < 3600) {
    std::snprintf(text, sizeof text, "%llu:%02llu", whole / 60, whole % 60);
  } else {
    std::snprintf(text, sizeof text, "%llu:%02llu:%02llu", whole / 3600, whole / 60 % 60, whole % 60);
  }
  return text;
}

}  // namespace

Progress::Progress(bool quiet, std::optional<uint64_t> total)
    : quiet_(quiet), shown_(!quiet && isatty(STDERR_FILENO) != 0 && total.value_or(2) > 1), total_(total) {}

void Progress::countDone(bool ok) {
  ++done_;
  if (!ok) ++failed_;
}

std::string Progress::line() const {
  const double rate = static_cast<double>(done_) / (seconds() + 1e-9);
  char text[160];
  const uint64_t past = done_ + skipped_;
  if (!total_) {
    std::snprintf(text, sizeof text, "%llu files, %.1f/s", static_cast<unsigned long long>(past), rate);
  } else {
    const uint64_t left = *total_ - past;
    const double share = 100.0 * static_cast<double>(past) / static_cast<double>(*total_);
    const std::string time = done_ == 0 ? "?" : clockText(static_cast<double>(left) / rate);
    std::snprintf(text, sizeof text, "%llu of %llu files, %.0f %%, %.1f/s, %s left",
                  static_cast<unsigned long long>(past), static_cast<unsigned long long>(*total_), share, rate,
                  time.c_str());
  }
  return text + (failed_ > 0 ? ", " + std::to_string(failed_) + " failed" : "");
}

void Progress::draw() {
  if (!shown_ || Clock::now() < next_) return;
  next_ = Clock::now() + std::chrono::milliseconds(interval());
  std::fprintf(stderr, "\r%s\033[K", line().c_str());
  std::fflush(stderr);
  drawn_ = true;
}

void Progress::clear() {
  if (!drawn_) return;
  std::fputs("\r\033[K", stderr);
  drawn_ = false;
}

void Progress::say(const std::string& text) {
  clear();
  std::fprintf(stderr, "%s\n", text.c_str());
  next_ = Clock::now();
}

void Progress::finish(bool interrupted) {
  clear();
  const uint64_t past = done_ + skipped_;
  if (quiet_ || past < 2 || !(shown_ || failed_ > 0 || interrupted)) return;
  std::string text = std::to_string(done_ - failed_) + " files done in " + clockText(seconds());
  if (skipped_ > 0) text += ", " + std::to_string(skipped_) + " were done before";
  if (failed_ > 0) text += ", " + std::to_string(failed_) + " failed";
  if (interrupted) text += total_ ? ", " + std::to_string(*total_ - past) + " left when interrupted" : ", interrupted";
  std::fprintf(stderr, "portraitcut: %s\n", text.c_str());
}
