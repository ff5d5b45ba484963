// The workers of a batch, as their coordinator sees them.
#ifndef APPS_PORTRAITCUT_WORKER_POOL_H
#define APPS_PORTRAITCUT_WORKER_POOL_H

#include <poll.h>
#include <sys/types.h>

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
  // Takes what came in through the sockets that are ready. A worker that died is buried; its file has failed.
  void collect(const std::vector<pollfd>& waits, const Done& done);

  // Ends all workers at once and removes what they were writing.
  void kill();

 private:
  struct Worker {
    pid_t process = 0;
    Descriptor socket;
    MessageReader reader;
    bool busy = false;
    uint64_t number = 0;
    Job job;
  };

  std::list<Worker>::iterator idleWorker();
  std::list<Worker>::iterator startWorker();
  void bury(std::list<Worker>::iterator dead, const Done& done);
  void removeUnfinished(const Worker& worker) const;

  const Options& options_;
  size_t most_;
  std::list<Worker> workers_;
};

#endif
