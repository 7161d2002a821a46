// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>
#include <array>
#include <csignal>
#include <ctime>
#include <fstream>
#include <poll.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include "util/child_process.h"
#include "util/open_file_linux.h"

namespace tallow {
namespace {

/// Connected by a socket, because writing to a pipe whose reader has ended raises a signal.
class LinuxChildProcess final : public ChildProcess {
 public:
  /// \param socket becomes owned
  LinuxChildProcess(pid_t process, int socket) noexcept : process_(process), socket_(socket) {}
  ~LinuxChildProcess() override {
    kill(process_, SIGKILL);
    Retry([this] { return waitpid(process_, nullptr, 0); });
  }

  bool Write(std::string_view bytes) override {
    while (!bytes.empty()) {
      const ssize_t sent = Retry(
          [&] { return send(socket_.descriptor(), bytes.data(), bytes.size(), MSG_NOSIGNAL); });
      if (sent <= 0) return false;
      bytes.remove_prefix(static_cast<std::size_t>(sent));
    }
    return true;
  }

  std::optional<std::string> Read(std::chrono::milliseconds timeout) override {
    pollfd wait{socket_.descriptor(), POLLIN, 0};
    const int ready = poll(&wait, 1, static_cast<int>(timeout.count()));
    if (ready <= 0) return std::string();
    const ssize_t got =
        Retry([&] { return recv(socket_.descriptor(), buffer_.data(), buffer_.size(), 0); });
    if (got <= 0) return std::nullopt;
    return std::string(buffer_.data(), static_cast<std::size_t>(got));
  }

  std::chrono::milliseconds ProcessorTime() const override {
    clockid_t clock{};
    timespec used{};
    if (clock_getcpuclockid(process_, &clock) != 0 || clock_gettime(clock, &used) != 0) return {};
    return std::chrono::floor<std::chrono::milliseconds>(std::chrono::seconds(used.tv_sec) +
                                                         std::chrono::nanoseconds(used.tv_nsec));
  }

 private:
  pid_t process_;
  OpenFile socket_;
  std::array<char, 16'384> buffer_{};  ///< of Read
};

/// Frees the actions of posix_spawn.
class SpawnActions {
 public:
  SpawnActions() { posix_spawn_file_actions_init(&actions_); }
  SpawnActions(const SpawnActions&) = delete;
  SpawnActions& operator=(const SpawnActions&) = delete;
  ~SpawnActions() { posix_spawn_file_actions_destroy(&actions_); }
  posix_spawn_file_actions_t* get() noexcept { return &actions_; }

 private:
  posix_spawn_file_actions_t actions_{};
};

}  // namespace

std::unique_ptr<ChildProcess> ChildProcess::Start(const std::string& program,
                                                  std::span<const std::string> arguments) {
  int ends[2] = {-1, -1};
  if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) return nullptr;
  OpenFile theirs(ends[1]);
  std::vector<char*> words{const_cast<char*>(program.c_str())};
  for (const std::string& argument : arguments)
    words.push_back(const_cast<char*>(argument.c_str()));
  words.push_back(nullptr);
  SpawnActions actions;
  posix_spawn_file_actions_adddup2(actions.get(), ends[1], STDIN_FILENO);
  posix_spawn_file_actions_adddup2(actions.get(), ends[1], STDOUT_FILENO);
  pid_t process = 0;
  if (posix_spawn(&process, program.c_str(), actions.get(), nullptr, words.data(), environ) != 0) {
    close(ends[0]);
    return nullptr;
  }
  return std::make_unique<LinuxChildProcess>(process, ends[0]);
}

bool ParentChannel::Read(std::span<char> bytes) {
  while (!bytes.empty()) {
    const ssize_t got = Retry([&] { return read(STDIN_FILENO, bytes.data(), bytes.size()); });
    if (got <= 0) return false;
    bytes = bytes.subspan(static_cast<std::size_t>(got));
  }
  return true;
}

bool ParentChannel::Write(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t sent = Retry([&] { return write(STDOUT_FILENO, bytes.data(), bytes.size()); });
    if (sent <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(sent));
  }
  return true;
}

void LimitMemoryOfThisProcess() {
  // Counts address space: that of the program's libraries, and the terabytes that sanitizers
  // reserve, are there already.
  rlim_t pages = 0;
  if (!(std::ifstream("/proc/self/statm") >> pages)) return;
  rlimit limit{};
  if (getrlimit(RLIMIT_AS, &limit) != 0) return;
  const rlim_t used = pages * static_cast<rlim_t>(sysconf(_SC_PAGESIZE));
  limit.rlim_cur = std::min<rlim_t>(used + kMaxChildMemory, limit.rlim_max);
  setrlimit(RLIMIT_AS, &limit);
}

void EndThisProcessAfter(std::chrono::seconds time) {
  static const bool can_be_ended = [] {
    // The thread that started this process may have blocked it.
    sigset_t alarms;
    sigemptyset(&alarms);
    sigaddset(&alarms, SIGALRM);
    sigprocmask(SIG_UNBLOCK, &alarms, nullptr);
    return signal(SIGALRM, SIG_DFL) != SIG_ERR;
  }();
  if (can_be_ended) alarm(static_cast<unsigned>(time.count()));
}

}  // namespace tallow
