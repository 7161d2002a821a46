// SPDX-License-Identifier: GPL-3.0-or-later
#include "util/work_at_once.h"

#include <algorithm>
#include <exception>
#include <thread>

#include "util/threads.h"

namespace tallow {
namespace {

/// Threads that are joined when this is destroyed, also by an exception.
class JoinedThreads {
 public:
  explicit JoinedThreads(std::size_t count) { threads_.reserve(count); }
  JoinedThreads(const JoinedThreads&) = delete;
  JoinedThreads& operator=(const JoinedThreads&) = delete;
  ~JoinedThreads() {
    for (std::thread& thread : threads_) Join(thread);
  }
  void Run(const std::function<void()>& work) { threads_.push_back(StartThreadOrRun(work)); }

 private:
  std::vector<std::thread> threads_;
};

}  // namespace

void WorkAtOnce(std::span<const std::function<void()>> works) {
  if (works.empty()) return;
  std::vector<std::exception_ptr> errors(works.size());
  const auto run = [&](std::size_t k) {
    try {
      works[k]();
    } catch (...) {
      errors[k] = std::current_exception();
    }
  };
  {
    JoinedThreads threads(works.size());
    for (std::size_t k = 0; k + 1 < works.size(); ++k) threads.Run([&run, k] { run(k); });
    run(works.size() - 1);
  }
  for (const std::exception_ptr& error : errors)
    if (error) std::rethrow_exception(error);
}

std::vector<std::size_t> PartsForCores(std::size_t size, std::size_t min_part) {
  const std::size_t cores = std::max(std::thread::hardware_concurrency(), 1U);
  const std::size_t count = std::clamp<std::size_t>(size / min_part, 1, cores);
  std::vector<std::size_t> ends;
  for (std::size_t k = 0; k <= count; ++k) ends.push_back(size * k / count);
  return ends;
}

}  // namespace tallow
