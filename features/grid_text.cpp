// Grids as hexadecimal text, the form of the two mean grids.
#include <cstddef>
#include <cstring>

#include "features/TGrid.h"
#include "features/hex_text.h"

namespace {

constexpr std::size_t kNumberLength = 4;  // digits of the count and of a coordinate
constexpr std::size_t kNodeLength = 2 * kNumberLength;

}  // namespace

int TGrid::LoadFromString(const char* text) {
  const std::size_t length = std::strlen(text);
  if (length < kNumberLength) return -1;
  const int count = hex2int(text);
  Clear();
  if (count <= 0) return 1;
  if (length < kNumberLength + kNodeLength * static_cast<std::size_t>(count)) return -1;
  const char* node = text + kNumberLength;
  for (int n = 0; n < count; ++n, node += kNodeLength) {
    AddNode({static_cast<float>(hex2int(node)), static_cast<float>(hex2int(node + kNumberLength))});
  }
  return 1;
}
