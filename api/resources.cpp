#include "api/resources.h"

#include <atomic>
#include <cstring>

#include "api/vizl_api.h"

namespace {

constexpr int kResources = 4;
constexpr const char* VIZL_resNames[kResources] = {"CDATA", "EYESVM", "EYESVM2", "MW"};
constexpr const char* VIZL_resTypes[kResources] = {"unknown 160", "unknown 178716", "unknown 178596", "unknown 4096"};
const unsigned char* const kBlobs[kResources] = {VIZL_resu1, VIZL_resu2, VIZL_resu3, VIZL_resu4};

// Null while the table does not exist.
std::atomic<const unsigned char* const*> VIZL_res = nullptr;

int findResource(const char* name) {
  if (name == nullptr) return -1;
  for (int i = 0; i < kResources; ++i) {
    if (std::strcmp(name, VIZL_resNames[i]) == 0) return i;
  }
  return -1;
}

}  // namespace

void FinalizeResources() { VIZL_res = nullptr; }

void VIZL_resInit() { VIZL_res = kBlobs; }

const unsigned char* VIZL_resData(const char* name) {
  const unsigned char* const* blobs = VIZL_res;
  const int index = findResource(name);
  return blobs != nullptr && index >= 0 ? blobs[index] : nullptr;
}

const char* VIZL_resType(const char* name) {
  const int index = findResource(name);
  return VIZL_res != nullptr && index >= 0 ? VIZL_resTypes[index] : nullptr;
}
