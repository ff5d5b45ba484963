// The workers of a batch, as their coordinator sees them.
#ifndef APPS_PORTRAITCUT_WORKER_POOL_H
#define APPS_PORTRAITCUT_WORKER_POOL_H

#include <poll.h>
#include <sys/types.h>

#include <chrono>
#include <functional>
#include <list>
#include <string>
#include <vector>

#include "descriptor.h"
#include "job.h"
#include "message.h"
#include "options.h"
#include "worker.h"

class WorkerPool {
 public:
  // Told the number of a job and what became of it.
  using Done = std::function<void(uint64_t, const Reply&)>;

  // The options' time limit holds for each job.
  WorkerPool(const Options& options, size_t workers) : options_(options), most_(workers) {}
  WorkerPool(const WorkerPool&) = delete;
  WorkerPool& operator=(const WorkerPool&) = delete;
  ~WorkerPool();

  bool hasIdle() const;
  size_t busy() const;
  // Gives a job to an idle worker, starting one if need be. Throws Failure if none can be started.
  void start(uint64_t number, const Job& job);

  // Adds the sockets of the busy workers to those to wait for.
  void addTo(std::vector<pollfd>& waits) const;
  // Milliseconds until a job may have taken longer than the limit, -1 if none will.
  int untilOverdue() const;
  // Takes what came in through the sockets that are ready. A worker that died is buried; its file has failed. So has
  // one that is overdue, and its worker is ended.
  void collect(const std::vector<pollfd>& waits, const Done& done);

  // Gives the jobs at hand their time anew.
  void restartClocks();

  // Ends all workers at once and removes what they were writing.
  void kill();

 private:
  using Clock = std::chrono::steady_clock;

  struct Worker {
    pid_t process = 0;
    Descriptor socket;
    MessageReader reader;
    bool busy = false;
    uint64_t number = 0;
    Job job;
    Clock::time_point overdue = Clock::time_point::max();
  };

  std::list<Worker>::iterator idleWorker();
  std::list<Worker>::iterator startWorker();
  Clock::time_point timeLimit() const;
  void listen(std::list<Worker>::iterator worker, bool overdue, const Done& done);
  void bury(std::list<Worker>::iterator dead, const std::string& reason, const Done& done);
  void removeUnfinished(const Worker& worker) const;

  const Options& options_;
  size_t most_;
  std::list<Worker> workers_;
};

#endif
