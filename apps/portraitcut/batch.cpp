#include "batch.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <thread>

#include "failure.h"
#include "file_bytes.h"
#include "input_source.h"
#include "output_names.h"
#include "reports.h"
#include "signals.h"
#include "worker_pool.h"

namespace {

// Reports leave in the order of the inputs. So many files may be done ahead of one that takes long.
constexpr uint64_t kMostAhead = 256;

size_t workersFor(const Options& options) {
  if (options.batch.jobs > 0) return static_cast<size_t>(options.batch.jobs);
  return std::max(1u, std::thread::hardware_concurrency());
}

void writeReport(const std::string& text) {
  writeDescriptor(STDOUT_FILENO, "standard output", {reinterpret_cast<const unsigned char*>(text.data()), text.size()});
}

class Batch {
 public:
  explicit Batch(const Options& options)
      : options_(options), source_(makeInputSource(options)), names_(options), pool_(options, workersFor(options)) {}

  int run() {
    holdSignals();
    if (options_.report == Report::kCsv) writeReport(csvHeader(options_.command));
    while (!finished()) {
      startJobs();
      if (!finished()) wait();
    }
    if (caughtSignal() != 0) return 128 + caughtSignal();
    return failed_ == 0 ? kAllDone : kSomeFailed;
  }

 private:
  bool stopping() const { return caughtSignal() != 0; }
  bool finished() const { return pool_.busy() == 0 && (stopping() || source_->ended()); }

  void startJobs() {
    while (!stopping() && pool_.hasIdle() && nextJob_ - nextReport_ < kMostAhead) {
      const std::optional<Input> input = source_->next();
      if (!input) return;
      startJob(*input);
    }
  }

  void startJob(const Input& input) {
    const uint64_t number = nextJob_++;
    Job job{input.path, ""};
    try {
      job.output = names_.nameFor(input);
    } catch (const Failure& failure) {
      finish(number, job, failedReply(options_, job, failure.what()));
      return;
    }
    pool_.start(number, job);
  }

  void wait() {
    std::vector<pollfd> waits;
    const bool wantsInput = !stopping() && pool_.hasIdle() && source_->descriptor() >= 0;
    if (wantsInput) waits.push_back({source_->descriptor(), POLLIN, 0});
    pool_.addTo(waits);
    waitInterruptibly(waits, -1);
    if (caughtCount() > 1) return pool_.kill();
    if (wantsInput && waits.front().revents != 0) source_->readSome();
    pool_.collect(waits, [this](uint64_t number, const Job& job, const Reply& reply) { finish(number, job, reply); });
  }

  void finish(uint64_t number, const Job& job, const Reply& reply) {
    if (!reply.ok) {
      ++failed_;
      std::fprintf(stderr, "portraitcut: %s: %s\n", job.input.c_str(), reply.reason.c_str());
    }
    reports_.emplace(number, reply.report);
    while (!reports_.empty() && reports_.begin()->first == nextReport_) {
      writeReport(reports_.begin()->second);
      reports_.erase(reports_.begin());
      ++nextReport_;
    }
  }

  const Options& options_;
  std::unique_ptr<InputSource> source_;
  OutputNames names_;
  WorkerPool pool_;
  std::map<uint64_t, std::string> reports_;  // by number, those that wait for earlier ones
  uint64_t nextJob_ = 0;
  uint64_t nextReport_ = 0;
  uint64_t failed_ = 0;
};

}  // namespace

int runBatch(const Options& options) { return Batch(options).run(); }
