#include "batch.h"

#include <unistd.h>

#include <algorithm>
#include <map>
#include <thread>

#include "batch_log.h"
#include "failure.h"
#include "file_bytes.h"
#include "input_source.h"
#include "output_names.h"
#include "progress.h"
#include "reports.h"
#include "signals.h"
#include "worker_pool.h"

namespace {

// Reports leave in the order of the inputs. So many files may be done ahead of one that takes long; of
// those with portraits in the reports two for each worker.
constexpr uint64_t kMostAhead = 256;

size_t workersFor(const Options& options) {
  if (options.batch.jobs > 0) return static_cast<size_t>(options.batch.jobs);
  return std::max(1u, std::thread::hardware_concurrency());
}

void writeReport(const std::string& text) {
  writeDescriptor(STDOUT_FILENO, "standard output", {reinterpret_cast<const unsigned char*>(text.data()), text.size()});
}

// Names may hold anything; a terminal must not obey them.
std::string printable(const std::string& text) {
  std::string result;
  for (const char c : text) result += static_cast<unsigned char>(c) < 32 || c == 127 ? '?' : c;
  return result;
}

// Of two times to wait in milliseconds; below 0 is without end.
int sooner(int first, int second) { return first < 0 || (second >= 0 && second < first) ? second : first; }

class Batch {
 public:
  explicit Batch(const Options& options)
      : options_(options),
        log_(options),
        source_(makeInputSource(options)),
        names_(options),
        progress_(options.batch.quiet, source_->total()),
        pool_(options, workersFor(options)),
        mostAhead_(options.input.pictureStream ? 2 * workersFor(options) : kMostAhead) {
    if (options.output.force) source_->protectAll();
  }

  int run() {
    holdSignals();
    if (options_.report == Report::kCsv) writeReport(csvHeader(options_.command));
    while (!finished()) {
      startJobs();
      if (!finished()) wait();
    }
    progress_.finish(stopping());
    if (stopping()) return 128 + caughtSignal();
    return progress_.failed() == 0 ? kAllDone : kSomeFailed;
  }

 private:
  bool stopping() const { return caughtSignal() != 0; }
  bool finished() const { return pool_.busy() == 0 && (stopping() || source_->ended()); }

  void startJobs() {
    while (!stopping() && pool_.hasIdle() && nextJob_ - nextReport_ < mostAhead_) {
      const std::optional<Input> input = source_->next();
      if (!input) return;
      startJob(*input);
    }
  }

  void startJob(const Input& input) {
    Job job{input.path, ""};
    try {
      job.output = names_.nameFor(input);
    } catch (const Failure& failure) {
      finish(nextJob_++, failedReply(options_, job, failure.what()));
      return;
    }
    if (log_.isDone(job.input)) return progress_.countSkipped();
    pool_.start(nextJob_++, job);
  }

  void wait() {
    std::vector<pollfd> waits;
    const bool wantsInput = !stopping() && pool_.hasIdle() && source_->descriptor() >= 0;
    if (wantsInput) waits.push_back({source_->descriptor(), POLLIN, 0});
    pool_.addTo(waits);
    progress_.draw();
    waitInterruptibly(waits, sooner(progress_.interval(), pool_.untilOverdue()));
    if (caughtCount() > 1) return pool_.kill();
    // The workers had stopped too.
    if (wasStopped()) pool_.restartClocks();
    if (wantsInput && waits.front().revents != 0) source_->readSome();
    pool_.collect(waits, [this](uint64_t number, const Reply& reply) { finish(number, reply); });
  }

  void finish(uint64_t number, const Reply& reply) {
    progress_.countDone(reply.ok);
    if (!reply.ok) progress_.say("portraitcut: " + printable(reply.name) + ": " + printable(reply.reason));
    log_.write(reply.log);
    reports_.emplace(number, reply.report);
    while (!reports_.empty() && reports_.begin()->first == nextReport_) {
      writeReport(reports_.begin()->second);
      reports_.erase(reports_.begin());
      ++nextReport_;
    }
  }

  const Options& options_;
  BatchLog log_;
  std::unique_ptr<InputSource> source_;
  OutputNames names_;
  Progress progress_;
  WorkerPool pool_;
  uint64_t mostAhead_;
  std::map<uint64_t, std::string> reports_;  // by number, those that wait for earlier ones
  uint64_t nextJob_ = 0;
  uint64_t nextReport_ = 0;
};

}  // namespace

int runBatch(const Options& options) { return Batch(options).run(); }
