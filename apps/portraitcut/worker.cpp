#include "worker.h"

#include <vizl_api.h>

#include "commands.h"
#include "faces.h"
#include "failure.h"
#include "reports.h"

namespace {

std::string failedMeasures(const Result& result) {
  std::string names;
  for (const Measure& measure : result.measures) {
    if (!measure.passes()) names += (names.empty() ? "" : ", ") + measure.name;
  }
  return "does not pass: " + names;
}

Reply replyFor(const Options& options, const Result& result) {
  Reply reply;
  reply.ok = result.ok && result.passes();
  reply.name = result.id.empty() ? result.input : result.id;
  reply.report = reportText(options, result);
  if (!options.batch.log.empty()) reply.log = logLine(options, result);
  reply.reason = result.ok ? failedMeasures(result) : result.reason;
  return reply;
}

Message toMessage(const Reply& reply) {
  return {reply.ok ? "1" : "0", reply.name, reply.report, reply.log, reply.reason};
}

}  // namespace

Message toMessage(const Job& job) { return {job.input, job.output}; }

Reply toReply(const Message& message) {
  return {message.at(0) == "1", message.at(1), message.at(2), message.at(3), message.at(4)};
}

Reply failedReply(const Options& options, const Job& job, const std::string& reason) {
  Result result;
  nameResult(options, job, result);
  result.reason = reason;
  return replyFor(options, result);
}

void serveJobs(const Options& options, int socket) {
  requireOk(VIZL_Initialize(nullptr), "starting");
  applySettings(options.detection, options.output.quality);
  while (const std::optional<Message> message = receiveMessage(socket)) {
    const Job job{message->at(0), message->at(1)};
    if (!sendMessage(socket, toMessage(replyFor(options, runJob(options, job))))) break;
  }
  VIZL_Finalize();
}
