// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/faults/child_process.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <exception>
#include <signal.h>
#include <stdexcept>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tallow {
namespace {

constexpr std::size_t kMaxBytes = std::size_t{4} << 20U;
constexpr int kExceptionCode = 3;

/// Memory that the child writes and the parent reads.
struct Shared {
  std::size_t bytes;
  char text[kMaxBytes];
};

/// Memory that this process shares with the child processes it forks later.
class SharedMemory {
 public:
  SharedMemory()
      : memory_(mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS,
                     -1, 0)) {
    if (memory_ == MAP_FAILED) throw std::runtime_error("no shared memory");
  }
  SharedMemory(const SharedMemory&) = delete;
  SharedMemory& operator=(const SharedMemory&) = delete;
  ~SharedMemory() { munmap(memory_, sizeof(Shared)); }
  Shared& operator*() const noexcept { return *static_cast<Shared*>(memory_); }

 private:
  void* const memory_;
};

void Leave(Shared& shared, const std::string& text) {
  shared.bytes = std::min(text.size(), kMaxBytes);
  std::memcpy(shared.text, text.data(), shared.bytes);
}

double Seconds(const timeval& time) {
  constexpr double kMicro = 1e-6;
  return static_cast<double>(time.tv_sec) + kMicro * static_cast<double>(time.tv_usec);
}

[[noreturn]] void RunAndEnd(Shared& shared, const std::function<std::string()>& act) {
  const rlimit no_core{0, 0};
  setrlimit(RLIMIT_CORE, &no_core);
  alarm(kHangSeconds);
  try {
    Leave(shared, act());
  } catch (const std::exception& error) {
    Leave(shared, error.what());
    _exit(kExceptionCode);
  }
  _exit(0);
}

}  // namespace

std::string ChildEnd::Words() const {
  switch (kind) {
    case Kind::kDone:
      return "done";
    case Kind::kException:
      return "exception: " + text;
    case Kind::kHang:
      return "hangs";
    case Kind::kSignal:
      break;
  }
  return "ends by signal " + std::to_string(signal);
}

ChildEnd RunInChild(const std::function<std::string()>& act) {
  const SharedMemory memory;
  Shared& shared = *memory;
  const pid_t child = fork();
  if (child < 0) throw std::runtime_error("no process can be made");
  if (child == 0) RunAndEnd(shared, act);
  int status = 0;
  rusage usage{};
  while (wait4(child, &status, 0, &usage) < 0)
    if (errno != EINTR) throw std::runtime_error("a process is lost");
  ChildEnd end;
  end.text.assign(shared.text, shared.bytes);
  end.seconds = Seconds(usage.ru_utime) + Seconds(usage.ru_stime);
  if (WIFSIGNALED(status)) {
    end.signal = WTERMSIG(status);
    end.kind = end.signal == SIGALRM ? ChildEnd::Kind::kHang : ChildEnd::Kind::kSignal;
  } else if (WEXITSTATUS(status) != 0) {
    end.kind = ChildEnd::Kind::kException;
  }
  return end;
}

}  // namespace tallow
