// A process that works on one file after the other. Each has the library to itself: the search for points draws from
// the process's rand, so only processes give the same points whatever their number; and a crash costs one file.
#ifndef APPS_PORTRAITCUT_WORKER_H
#define APPS_PORTRAITCUT_WORKER_H

#include <string>

#include "job.h"
#include "message.h"
#include "options.h"

// What a worker tells about its file.
struct Reply {
  bool ok = false;
  std::string name;    // of the input
  std::string report;  // for standard output
  std::string log;     // line for the log
  std::string reason;  // of a failure
};

Message toMessage(const Job& job);
Reply toReply(const Message& message);

// The reply to a job whose worker can't tell.
Reply failedReply(const Options& options, const Job& job, const std::string& reason);

// Answers jobs that come through the socket until it is closed.
void serveJobs(const Options& options, int socket);

#endif
