#include "run_token.h"

#include <cstdint>
#include <cstdio>
#include <random>

namespace {

std::string makeToken() {
  std::random_device device;
  char text[17];
  std::snprintf(text, sizeof text, "%08x%08x", static_cast<unsigned>(device()), static_cast<unsigned>(device()));
  return text;
}

}  // namespace

const std::string& runToken() {
  static const std::string token = makeToken();
  return token;
}
