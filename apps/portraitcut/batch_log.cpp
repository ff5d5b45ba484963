#include "batch_log.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <fstream>
#include <nlohmann/json.hpp>

#include "base64.h"
#include "failure.h"
#include "file_bytes.h"
#include "settings_mark.h"

namespace {

using Json = nlohmann::json;

// A file name as jsonLine writes it: bytes that are no UTF-8 are told in base64 beside.
std::string nameIn(const Json& json, const std::string& key) {
  const auto exact = json.find(key + "_base64");
  if (exact == json.end()) return json.at(key).get<std::string>();
  const auto bytes = fromBase64(exact->get<std::string>());
  return bytes ? std::string(bytes->begin(), bytes->end()) : "";
}

bool exists(const std::string& path) {
  struct stat status;
  return lstat(path.c_str(), &status) == 0;
}

bool outputsExist(const Json& record) {
  if (record.contains("output") && !exists(nameIn(record, "output"))) return false;
  for (const Json& face : record.at("faces")) {
    if (face.contains("output") && !exists(nameIn(face, "output"))) return false;
  }
  return true;
}

}  // namespace

BatchLog::BatchLog(const Options& options) : path_(options.batch.log) {
  if (path_.empty()) return;
  const bool resume = options.batch.resume;
  const int exclusive = resume || options.output.force ? 0 : O_EXCL;
  file_ = Descriptor(open(path_.c_str(), O_RDWR | O_CREAT | O_APPEND | O_CLOEXEC | exclusive, 0666));
  if (!file_ && errno == EEXIST) {
    throw Failure("the log " + path_ + " exists; --resume goes on with it, --force begins anew");
  }
  if (!file_) failWithErrno("cannot open the log " + path_, errno);
  if (flock(file_.get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
    throw Failure("another run is writing the log " + path_);
  }
  if (resume) {
    readDone(options);
  } else if (ftruncate(file_.get(), 0) != 0 && errno != EINVAL) {  // EINVAL: a pipe or a device
    failWithErrno("cannot empty the log " + path_, errno);
  }
}

// A run that was killed may have left part of a line; that file is done again.
void BatchLog::readDone(const Options& options) {
  const std::string settings = settingsMark(options);
  std::ifstream stream(path_, std::ios::binary);
  std::string line;
  bool whole = true;
  while (std::getline(stream, line)) {
    whole = !stream.eof();
    takeLine(line, settings);
  }
  if (!whole) write("\n");
}

void BatchLog::takeLine(const std::string& line, const std::string& settings) {
  const Json record = Json::parse(line, nullptr, false);
  if (!record.is_object()) return;
  try {
    if (record.at("settings") != settings) return;
    const std::string input = nameIn(record, "input");
    if (record.at("status") == "ok" && outputsExist(record)) {
      done_.insert(input);
    } else {
      done_.erase(input);
    }
  } catch (const Json::exception&) {
    // Not a line of ours.
  }
}

void BatchLog::write(const std::string& line) {
  if (!file_ || line.empty()) return;
  writeDescriptor(file_.get(), "the log " + path_, {reinterpret_cast<const unsigned char*>(line.data()), line.size()});
}
