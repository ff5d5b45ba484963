#include "worker_pool.h"

#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstring>

#include "encode.h"
#include "failure.h"
#include "output_file.h"
#include "run_token.h"
#include "scratch_file.h"
#include "signals.h"

namespace {

int waitFor(pid_t process) {
  int status = 0;
  while (waitpid(process, &status, 0) < 0 && errno == EINTR) {
  }
  return status;
}

std::string describeDeath(int status) {
  if (!WIFSIGNALED(status)) return "the worker ended unexpectedly";
  const int signal = WTERMSIG(status);
  return "the worker died of signal " + std::to_string(signal) + " (" + strsignal(signal) + ")";
}

std::string describeLimit(double seconds) {
  char text[80];
  std::snprintf(text, sizeof text, "took longer than %.9g s and was given up (--file-timeout)", seconds);
  return text;
}

[[noreturn]] void runWorker(const Options& options, int socket) {
  leaveSignalsToCoordinator();
  int status = 0;
  try {
    serveJobs(options, socket);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "portraitcut: %s\n", error.what());
    status = 1;
  }
  // Nothing of the coordinator's may be unwound here.
  _exit(status);
}

}  // namespace

WorkerPool::~WorkerPool() {
  // A worker ends when its socket closes.
  for (Worker& worker : workers_) worker.socket.reset();
  for (const Worker& worker : workers_) waitFor(worker.process);
}

bool WorkerPool::hasIdle() const { return busy() < most_; }

size_t WorkerPool::busy() const {
  return static_cast<size_t>(
      std::count_if(workers_.begin(), workers_.end(), [](const Worker& worker) { return worker.busy; }));
}

std::list<WorkerPool::Worker>::iterator WorkerPool::startWorker() {
  int sockets[2];
  if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, sockets) != 0) failWithErrno("cannot start a worker", errno);
  Descriptor ours(sockets[0]);
  const Descriptor theirs(sockets[1]);
  runToken();  // made before the processes part, so that all share it
  const pid_t process = fork();
  if (process < 0) failWithErrno("cannot start a worker", errno);
  if (process == 0) {
    // A copy of another worker's socket would keep that one alive after the coordinator's end.
    for (Worker& other : workers_) other.socket.reset();
    ours.reset();
    runWorker(options_, theirs.get());
  }
  Worker& worker = workers_.emplace_back();
  worker.process = process;
  worker.socket = std::move(ours);
  return std::prev(workers_.end());
}

std::list<WorkerPool::Worker>::iterator WorkerPool::idleWorker() {
  const auto idle = std::find_if(workers_.begin(), workers_.end(), [](const Worker& worker) { return !worker.busy; });
  return idle != workers_.end() ? idle : startWorker();
}

void WorkerPool::start(uint64_t number, const Job& job) {
  std::list<Worker>::iterator worker = idleWorker();
  // One that died while it had nothing to do is no loss.
  while (!sendMessage(worker->socket.get(), toMessage(job))) {
    waitFor(worker->process);
    workers_.erase(worker);
    worker = startWorker();
  }
  worker->busy = true;
  worker->number = number;
  worker->job = job;
  worker->overdue = timeLimit();
}

WorkerPool::Clock::time_point WorkerPool::timeLimit() const {
  if (options_.batch.fileTimeout == 0) return Clock::time_point::max();
  return Clock::now() +
         std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(options_.batch.fileTimeout));
}

void WorkerPool::restartClocks() {
  for (Worker& worker : workers_) worker.overdue = timeLimit();
}

int WorkerPool::untilOverdue() const {
  Clock::time_point first = Clock::time_point::max();
  for (const Worker& worker : workers_) {
    if (worker.busy) first = std::min(first, worker.overdue);
  }
  if (first == Clock::time_point::max()) return -1;
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(first - Clock::now()).count();
  return static_cast<int>(std::clamp<int64_t>(left, 0, INT_MAX));
}

void WorkerPool::addTo(std::vector<pollfd>& waits) const {
  for (const Worker& worker : workers_) {
    if (worker.busy) waits.push_back({worker.socket.get(), POLLIN, 0});
  }
}

void WorkerPool::collect(const std::vector<pollfd>& waits, const Done& done) {
  const Clock::time_point now = Clock::now();
  for (auto next = workers_.begin(); next != workers_.end();) {
    const auto worker = next++;
    const auto isReady = [&](const pollfd& wait) { return wait.fd == worker->socket.get() && wait.revents != 0; };
    const bool overdue = worker->overdue <= now;
    if (worker->busy && (overdue || std::any_of(waits.begin(), waits.end(), isReady))) listen(worker, overdue, done);
  }
}

void WorkerPool::listen(std::list<Worker>::iterator worker, bool overdue, const Done& done) {
  const bool alive = worker->reader.readSome(worker->socket.get());
  if (const std::optional<Message> message = worker->reader.take()) {
    worker->busy = false;
    done(worker->number, toReply(*message));
  } else if (!alive) {
    bury(worker, "", done);
  } else if (worker->reader.hasBegun()) {
    // Its file is done; that the answer waited for the coordinator is not its fault.
    worker->overdue = Clock::time_point::max();
  } else if (overdue) {
    ::kill(worker->process, SIGKILL);
    bury(worker, describeLimit(options_.batch.fileTimeout), done);
  }
}

// An empty reason: the one of the worker's death.
void WorkerPool::bury(std::list<Worker>::iterator dead, const std::string& reason, const Done& done) {
  const int status = waitFor(dead->process);
  removeUnfinished(*dead);
  const uint64_t number = dead->number;
  const Job job = std::move(dead->job);
  workers_.erase(dead);
  done(number, failedReply(options_, job, reason.empty() ? describeDeath(status) : reason));
}

void WorkerPool::removeUnfinished(const Worker& worker) const {
  const bool writesFile = !worker.job.output.empty() && worker.job.output != "-";
  for (const Format format : {Format::kJpeg, Format::kPng, Format::kBmp}) {
    unlink(scratchName(format, worker.process).c_str());
    if (writesFile) unlink(unfinishedName(worker.job.output, format, worker.process).c_str());
  }
}

void WorkerPool::kill() {
  for (const Worker& worker : workers_) ::kill(worker.process, SIGKILL);
  for (const Worker& worker : workers_) {
    waitFor(worker.process);
    removeUnfinished(worker);
  }
  workers_.clear();
}
