// SPDX-License-Identifier: GPL-3.0-or-later
#include "util/spawn_linux.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include "util/open_file_linux.h"

namespace tallow {
namespace {

/// Becomes the program. Returns only when that fails. Between fork and exec nothing may allocate.
void Become(const char* path, char* const* arguments, int handed) noexcept {
  sigset_t none;
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, nullptr);
  signal(SIGPIPE, SIG_DFL);
  // Out of the way first: where standard input was closed, the descriptor may have its number.
  const int safe = handed < 0 ? -1 : fcntl(handed, F_DUPFD_CLOEXEC, kHandedDescriptor + 1);
  const int nothing = open("/dev/null", O_RDONLY | O_CLOEXEC);
  if (nothing >= 0) dup2(nothing, STDIN_FILENO);
  // Copying drops the mark to be closed here, but not onto itself.
  fcntl(STDIN_FILENO, F_SETFD, 0);
  if (safe >= 0) dup2(safe, kHandedDescriptor);
  execv(path, arguments);
}

/// Runs the program in a child of this process, which itself ends at once. Writes the child's process
/// id, and 0 when it could not become the program.
[[noreturn]] void RunAsOrphan(const char* path, char* const* arguments, int handed,
                              int writing) noexcept {
  setsid();
  const pid_t program = _Fork();
  if (program != 0) _exit(program < 0 ? 1 : 0);
  const pid_t self = getpid();
  const bool told = write(writing, &self, sizeof self) == sizeof self;
  if (told) Become(path, arguments, handed);
  const pid_t failed = 0;
  _exit(write(writing, &failed, sizeof failed) == sizeof failed ? 127 : 126);
}

/// Reads a whole number of the size that was written, or fails.
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

  // Through the pipe comes the process id, and a 0 behind it when the program could not be run; one
  // that runs has closed it. The pipe must not take the place of the descriptor to be handed over.
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
