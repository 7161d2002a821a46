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

/// Duplicates a descriptor to a number that no program is started with; returns below 0 for none.
int CopyAboveHanded(int descriptor) noexcept {
  return descriptor < 0 ? -1 : fcntl(descriptor, F_DUPFD_CLOEXEC, kUsualErrors + 1);
}

/// Replaces the process by the program. Returns only on failure. Only async-signal-safe calls are
/// allowed between fork and exec, so no allocation.
void Become(const char* path, char* const* arguments, const SpawnFiles& files) noexcept {
  sigset_t none;
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, nullptr);
  signal(SIGPIPE, SIG_DFL);
  // Duplicate to high numbers first: if standard input was closed, a file may be descriptor 0.
  const int handed = CopyAboveHanded(files.handed);
  const int errors = CopyAboveHanded(files.errors);
  const int usual_errors = errors < 0 ? -1 : CopyAboveHanded(STDERR_FILENO);
  const int nothing = open("/dev/null", O_RDONLY | O_CLOEXEC);
  if (nothing >= 0) dup2(nothing, STDIN_FILENO);
  // dup2() clears FD_CLOEXEC, except when both descriptors are equal.
  fcntl(STDIN_FILENO, F_SETFD, 0);
  if (handed >= 0) dup2(handed, kHandedDescriptor);
  if (errors >= 0) dup2(errors, STDERR_FILENO);
  if (errors >= 0) dup2(usual_errors >= 0 ? usual_errors : nothing, kUsualErrors);
  execv(path, arguments);
}

/// Forks again and exits, so that the program becomes an orphan of this process. The grandchild
/// writes its process id to the pipe, and then 0 if exec fails.
[[noreturn]] void RunAsOrphan(const char* path, char* const* arguments, const SpawnFiles& files,
                              int writing) noexcept {
  setsid();
  const pid_t program = _Fork();
  if (program != 0) _exit(program < 0 ? 1 : 0);
  const pid_t self = getpid();
  const bool is_sent = write(writing, &self, sizeof self) == sizeof self;
  if (is_sent) Become(path, arguments, files);
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

pid_t Spawn(const std::string& path, std::span<const std::string> arguments,
            const SpawnFiles& files) {
  std::vector<char*> words{const_cast<char*>(path.c_str())};
  for (const std::string& argument : arguments)
    words.push_back(const_cast<char*>(argument.c_str()));
  words.push_back(nullptr);

  // The pipe transfers the process id, followed by 0 if exec failed; a successful exec closes the
  // pipe. The pipe's descriptors must not collide with the descriptors to hand over.
  int ends[2] = {-1, -1};
  if (pipe2(ends, O_CLOEXEC) != 0) return 0;
  const OpenFile reading(ends[0]);
  {
    const OpenFile low_writing(ends[1]);
    const OpenFile writing(CopyAboveHanded(ends[1]));
    if (!writing) return 0;
    const pid_t between = fork();
    if (between < 0) return 0;
    if (between == 0) RunAsOrphan(path.c_str(), words.data(), files, writing.descriptor());
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
