// Work over an index range in child processes, for work that draws from the C library's one random sequence: threads
// would mix up each other's numbers.
#pragma once

#include <cstddef>
#include <cstring>
#include <functional>
#include <string>
#include <type_traits>
#include <vector>

namespace evaluation {

// Calls work(i) once for every i below `count`, in `processes` children (with 1 in this process), and returns the
// bytes that each call gave, by i. No other thread may run meanwhile. Throws std::runtime_error if a child fails.
std::vector<std::string> forEachIndexInProcesses(std::size_t count, unsigned processes,
                                                 const std::function<std::string(std::size_t)>& work);

// Plain records as bytes and back.
template <typename Record>
std::string bytesOf(const std::vector<Record>& records) {
  static_assert(std::is_trivially_copyable_v<Record>);
  return std::string(reinterpret_cast<const char*>(records.data()), records.size() * sizeof(Record));
}

template <typename Record>
std::vector<Record> recordsOf(const std::string& bytes) {
  static_assert(std::is_trivially_copyable_v<Record>);
  std::vector<Record> records(bytes.size() / sizeof(Record));
  std::memcpy(static_cast<void*>(records.data()), bytes.data(), records.size() * sizeof(Record));
  return records;
}

}  // namespace evaluation
