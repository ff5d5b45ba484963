#include <unistd.h>

#include <chrono>
#include <new>

#include "commands.h"
#include "decode.h"
#include "failure.h"
#include "file_bytes.h"
#include "output_file.h"
#include "stored_coordinates.h"
#include "stream_line.h"

namespace {

// The memory of the last file serves the next.
std::vector<unsigned char>& fileBuffer() {
  static std::vector<unsigned char> buffer;
  return buffer;
}

const std::vector<unsigned char>& readInput(const Options& options, const Job& job) {
  std::vector<unsigned char>& bytes = fileBuffer();
  if (options.input.pictureStream) {
    bytes = streamedPicture(job.input);
  } else if (job.input == "-") {
    readDescriptor(STDIN_FILENO, "standard input", bytes);
  } else {
    readFile(job.input, bytes);
  }
  return bytes;
}

void runCommand(const Options& options, const Job& job, const Picture& picture, Result& result) {
  switch (options.command) {
    case Command::kCut:
      return runCut(options, job, picture, result);
    case Command::kFeatures:
      return runFeatures(options, picture, result);
    case Command::kEyes:
      return runEyes(options, picture, result);
    case Command::kAnnotate:
      return runAnnotate(options, job, picture, result);
    case Command::kCheck:
      return runCheck(options, picture, result);
    default:
      return runDetect(options, picture, result);
  }
}

void work(const Options& options, const Job& job, Result& result) {
  // Before the picture is decoded: most of the time would be lost.
  const bool oneOutput = options.command != Command::kCut || options.cut.face != 0;
  if (oneOutput && !job.output.empty() && job.output != "-") {
    refuseExisting(job.output, job.input, options.output.force);
  }
  const UprightPicture upright =
      decodeUpright(readInput(options, job), options.input.ignoreOrientation, options.cut.fill);
  result.size = upright.picture.size();
  result.orientation = upright.orientation;
  runCommand(options, job, upright.picture, result);
  if (options.storedCoordinates) tellInStoredCoordinates(result);
}

void fail(Result& result, const std::string& reason, int32_t code) {
  result.reason = reason;
  result.code = code;
}

}  // namespace

void nameResult(const Options& options, const Job& job, Result& result) {
  if (options.input.pictureStream) {
    result.id = streamedId(job.input);
  } else {
    result.input = job.input;
  }
}

Result runJob(const Options& options, const Job& job) {
  const auto start = std::chrono::steady_clock::now();
  Result result;
  nameResult(options, job, result);
  try {
    work(options, job, result);
    result.ok = true;
  } catch (const Failure& failure) {
    fail(result, failure.what(), failure.code());
  } catch (const std::bad_alloc&) {
    fail(result, "not enough memory", 0);
  } catch (const std::exception& error) {
    fail(result, error.what(), 0);
  }
  result.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  return result;
}
