#include "failure.h"

#include <vizl_api.h>

#include <cstring>

void failWithErrno(const std::string& what, int error) { throw Failure(what + ": " + std::strerror(error)); }

void requireOk(int32_t code, const char* doing) {
  switch (code) {
    case VIZLE_OK:
      return;
    case VIZLE_NO_FACE:
      throw Failure("no face found", code);
    case VIZLE_IMAGE_TOO_SMALL:
      throw Failure("the picture is smaller than 20 by 20 pixels", code);
    case VIZLE_IMAGE_IO_FAILED:
    case VIZLE_BAD_IMAGE_FILE:
      throw Failure(std::string(doing) + ": damaged, or of a kind that is not supported", code);
    default:
      throw Failure(std::string(doing) + ": a size is out of range, or memory is short", code);
  }
}
