// Why one file could not be done. Commands throw it; the worker turns it into the record of that file.
#ifndef APPS_PORTRAITCUT_FAILURE_H
#define APPS_PORTRAITCUT_FAILURE_H

#include <cstdint>
#include <stdexcept>
#include <string>

class Failure : public std::runtime_error {
 public:
  explicit Failure(const std::string& reason, int32_t code = 0) : std::runtime_error(reason), code_(code) {}

  // The library's code, or 0 if the library had no part in it.
  int32_t code() const { return code_; }

 private:
  int32_t code_;
};

// "what: reason of the system".
[[noreturn]] void failWithErrno(const std::string& what, int error);

// Throws for every code but VIZLE_OK.
void requireOk(int32_t code, const char* doing);

#endif
