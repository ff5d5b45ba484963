#include "training/evaluation/parallel.h"

#include <atomic>
#include <exception>
#include <mutex>
#include <thread>
#include <vector>

namespace evaluation {

void forEachIndex(std::size_t count, unsigned threads, const std::function<void(std::size_t)>& work) {
  std::atomic<std::size_t> next{0};
  std::exception_ptr failure;
  std::mutex failureGuard;
  auto run = [&] {
    try {
      for (std::size_t i = next++; i < count; i = next++) work(i);
    } catch (...) {
      next = count;
      const std::lock_guard<std::mutex> lock(failureGuard);
      if (!failure) failure = std::current_exception();
    }
  };
  {
    std::vector<std::jthread> pool;
    for (unsigned t = 1; t < threads; ++t) pool.emplace_back(run);
    run();
  }
  if (failure) std::rethrow_exception(failure);
}

}  // namespace evaluation
