// SPDX-License-Identifier: GPL-3.0-or-later
// Interposes the system's file calls. Linked into the tests; loaded as a separate library
// (LD_PRELOAD), it blocks the folder in TALLOW_DEAD_FOLDER for a whole program.
#include "tests/dead_folder_linux.h"

#include <atomic>
#include <cerrno>
#include <condition_variable>
#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <mutex>
#include <string_view>
#include <sys/stat.h>

namespace tallow {
namespace {

/// What happens to calls. Never destroyed, because threads may still be blocked when the program
/// ends.
struct Gate {
  Gate() {
    if (const char* const dead = std::getenv("TALLOW_DEAD_FOLDER")) {
      folder = dead;
      is_set = true;
    }
  }

  std::atomic<bool> is_set = false;
  std::mutex mutex;
  std::condition_variable changed;
  std::string folder;
  int error = 0;  ///< errno for every call; 0: calls block
  int waiting = 0;
  int asked = 0;
};

Gate& TheGate() {
  static Gate* const gate = new Gate;
  return *gate;
}

/// \returns the errno value that the call fails with; 0 to pass the call on
int Pass(const char* path) {
  Gate& gate = TheGate();
  if (!gate.is_set || path == nullptr) return 0;
  std::unique_lock lock(gate.mutex);
  const std::string_view text(path);
  // The folder itself may be named without its separator.
  const std::string_view own = std::string_view(gate.folder).substr(0, gate.folder.size() - 1);
  if (!gate.is_set || !text.starts_with(own) ||
      (text.size() > own.size() && text[own.size()] != '/'))
    return 0;
  ++gate.asked;
  if (gate.error != 0) return gate.error;
  ++gate.waiting;
  gate.changed.wait(lock, [&gate] { return !gate.is_set; });
  --gate.waiting;
  gate.changed.notify_all();
  return 0;
}

template <typename Function>
Function* Real(const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

void Set(const std::string& folder, int error) {
  Gate& gate = TheGate();
  const std::lock_guard lock(gate.mutex);
  gate.folder = folder;
  gate.error = error;
  gate.asked = 0;
  gate.is_set = true;
}

void Clear() {
  Gate& gate = TheGate();
  std::unique_lock lock(gate.mutex);
  gate.is_set = false;
  gate.changed.notify_all();
  gate.changed.wait(lock, [&gate] { return gate.waiting == 0; });
}

int CountOfAsked() {
  Gate& gate = TheGate();
  const std::lock_guard lock(gate.mutex);
  return gate.asked;
}

}  // namespace

DeadFolder::DeadFolder(const std::string& folder) { Set(folder, 0); }
DeadFolder::~DeadFolder() { Clear(); }
int DeadFolder::Asked() const { return CountOfAsked(); }

FailingFolder::FailingFolder(const std::string& folder, int error) { Set(folder, error); }
FailingFolder::~FailingFolder() { Clear(); }
int FailingFolder::Asked() const { return CountOfAsked(); }

}  // namespace tallow

using tallow::Pass;
using tallow::Real;

extern "C" {

DIR* opendir(const char* path) {
  static auto* const real = Real<DIR*(const char*)>("opendir");
  if (const int error = Pass(path); error != 0) return errno = error, nullptr;
  return real(path);
}

int stat(const char* path, struct stat* status) noexcept {
  static auto* const real = Real<int(const char*, struct stat*)>("stat");
  if (const int error = Pass(path); error != 0) return errno = error, -1;
  return real(path, status);
}

int lstat(const char* path, struct stat* status) noexcept {
  static auto* const real = Real<int(const char*, struct stat*)>("lstat");
  if (const int error = Pass(path); error != 0) return errno = error, -1;
  return real(path, status);
}

int openat(int folder, const char* path, int flags, ...) {
  static auto* const real = Real<int(int, const char*, int, mode_t)>("openat");
  va_list more;
  va_start(more, flags);
  const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(more, mode_t) : 0;
  va_end(more);
  if (const int error = Pass(path); error != 0) return errno = error, -1;
  return real(folder, path, flags, mode);
}

int open(const char* path, int flags, ...) {
  static auto* const real = Real<int(const char*, int, mode_t)>("open");
  va_list more;
  va_start(more, flags);
  const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(more, mode_t) : 0;
  va_end(more);
  if (const int error = Pass(path); error != 0) return errno = error, -1;
  return real(path, flags, mode);
}
}
