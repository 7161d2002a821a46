// SPDX-License-Identifier: GPL-3.0-or-later
#include "util/detached_process_linux.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include "util/open_file_linux.h"

namespace tallow {
namespace {

/// Replaces the process by the program. Returns only on failure. Only async-signal-safe calls are
/// allowed between fork and exec, so no allocation.
void Become(const char* path, char* const* arguments, int handed) noexcept {
  sigset_t none;
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, nullptr);
  signal(SIGPIPE, SIG_DFL);
  // Duplicate to a high number first: if standard input was closed, `handed` may be descriptor 0.
  const int safe = handed < 0 ? -1 : fcntl(handed, F_DUPFD_CLOEXEC, kHandedDescriptor + 1);
  const int nothing = open("/dev/null", O_RDONLY | O_CLOEXEC);
  if (nothing >= 0) dup2(nothing, STDIN_FILENO);
  // dup2() clears FD_CLOEXEC, except when both descriptors are equal.
  fcntl(STDIN_FILENO, F_SETFD, 0);
  if (safe >= 0) dup2(safe, kHandedDescriptor);
  execv(path, arguments);
}

/// Forks again and exits, so that the program becomes an orphan of this process. The grandchild
/// writes its process id to the pipe, and then 0 if exec fails.
[[noreturn]] void RunAsOrphan(const char* path, char* const* arguments, int handed,
                              int writing) noexcept {
  setsid();
  const pid_t program = _Fork();
  if (program != 0) _exit(program < 0 ? 1 : 0);
  const pid_t self = getpid();
  const bool is_sent = write(writing, &self, sizeof self) == sizeof self;
  if (is_sent) Become(path, arguments, handed);
  const pid_t failed = 0;
  _exit(write(writing, &failed, sizeof failed) == sizeof failed ? 127 : 126);
}

/// Reads a complete process id; returns false on end of file or error.
bool ReadPid(int descriptor, pid_t& pid) noexcept {
  ssize_t got = 0;
  do got = read(descriptor, &pid, sizeof pid);
  while (got < 0 && errno == EINTR);
  return got == sizeof pid;
}

}  // namespace

pid_t Spawn(const std::string& path, std::span<const std::string> arguments, int handed) {
  std::vector<char*> words{const_cast<char*>(path.c_str())};
  for (const std::string& argument : arguments)
    words.push_back(const_cast<char*>(argument.c_str()));
  words.push_back(nullptr);

  // The pipe transfers the process id, followed by 0 if exec failed; a successful exec closes the
  // pipe. The pipe's descriptors must not collide with the descriptor to hand over.
  int ends[2] = {-1, -1};
  if (pipe2(ends, O_CLOEXEC) != 0) return 0;
  const OpenFile reading(ends[0]);
  {
    const OpenFile low_writing(ends[1]);
    const OpenFile writing(fcntl(ends[1], F_DUPFD_CLOEXEC, kHandedDescriptor + 1));
    if (!writing) return 0;
    const pid_t between = fork();
    if (between < 0) return 0;
    if (between == 0) RunAsOrphan(path.c_str(), words.data(), handed, writing.descriptor());
    int status = 0;
    while (waitpid(between, &status, 0) < 0 && errno == EINTR) {
    }
  }
  pid_t program = 0;
  pid_t failed = 0;
  if (!ReadPid(reading.descriptor(), program)) return 0;
  return ReadPid(reading.descriptor(), failed) ? 0 : program;
}

}  // namespace tallow
