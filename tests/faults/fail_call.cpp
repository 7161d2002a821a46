// SPDX-License-Identifier: GPL-3.0-or-later
// A library for LD_PRELOAD that interposes calls of the C library: it counts the file calls of a
// test, and fails one of them.
#include "tests/faults/fail_call.h"

#include <algorithm>
#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <limits.h>
#include <mutex>
#include <signal.h>
#include <string>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace tallow {
namespace {

/// What happens to a call.
struct Verdict {
  int error = 0;         ///< 0: the call is passed on
  bool shorten = false;  ///< the call is passed on with half of its bytes
  bool kill = false;     ///< the process is killed after the call
};

[[noreturn]] void Kill() {
  for (;;) syscall(SYS_kill, getpid(), SIGKILL);
}

/// The fault of this process.
class Faults {
 public:
  void Arm(const char* root, const Fault* fault, int descriptor) {
    const std::lock_guard lock(mutex_);
    root_ = root;
    descriptor_ = descriptor;
    has_fault_ = fault != nullptr;
    if (has_fault_) {
      fault_ = *fault;
      path_ = fault->path;
    }
    seen_ = 0;
    has_come_ = false;
    armed_ = true;
  }
  bool Disarm() {
    const std::lock_guard lock(mutex_);
    armed_ = false;
    return has_come_;
  }
  bool IsArmed() const noexcept { return armed_; }

  bool Counts(const std::string& path) const { return armed_ && path.starts_with(root_); }

  /// \param needs_room whether the call fails on a full disk
  Verdict Judge(SystemCall call, const std::string& path, bool needs_room) {
    if (!Counts(path)) return {};
    const std::lock_guard lock(mutex_);
    std::string_view below = std::string_view(path).substr(root_.size());
    while (below.ends_with('/')) below.remove_suffix(1);
    if (descriptor_ >= 0) {
      Record(call, below);
      return {};
    }
    if (!has_fault_) return {};
    if (!has_come_) {
      if (call != fault_.call || below != path_ || ++seen_ != fault_.occurrence) return {};
      has_come_ = true;
      if (fault_.action == kKillProcess) Kill();
      if (fault_.action == kKillHalfway) return {0, true, true};
      // The first write to a full disk writes as much as fits.
      const bool half = fault_.action == kShorten ||
                        (fault_.reach == FaultReach::kWrites && call == SystemCall::kWrite);
      return half ? Verdict{0, true, false} : Verdict{fault_.action, false, false};
    }
    const bool again = (fault_.reach == FaultReach::kPath && below == path_) ||
                       (fault_.reach == FaultReach::kWrites && needs_room);
    return again ? Verdict{fault_.action, false, false} : Verdict{};
  }

 private:
  void Record(SystemCall call, std::string_view path) const {
    const std::string line = std::string(kSystemCalls[static_cast<std::size_t>(call)])
                                 .append(" ")
                                 .append(path)
                                 .append("\n");
    syscall(SYS_write, descriptor_, line.data(), line.size());
  }
  std::mutex mutex_;
  std::atomic<bool> armed_ = false;
  std::string root_;
  std::string path_;
  Fault fault_;
  bool has_fault_ = false;
  bool has_come_ = false;
  int seen_ = 0;
  int descriptor_ = -1;
};

/// Never destroyed, because other libraries close files while the process ends.
Faults& FaultsOfProcess() {
  static Faults& faults = *new Faults;
  return faults;
}

/// The next definition of a function, which this library interposes.
template <typename Function>
Function Next(const char* name) {
  return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

/// The path of an open descriptor; empty when no fault is armed.
std::string PathOf(int descriptor) {
  if (!FaultsOfProcess().IsArmed()) return {};
  const std::string link = "/proc/self/fd/" + std::to_string(descriptor);
  std::string path(PATH_MAX, '\0');
  const long length = syscall(SYS_readlinkat, AT_FDCWD, link.c_str(), path.data(), path.size());
  path.resize(length > 0 ? static_cast<std::size_t>(length) : 0);
  constexpr std::string_view kDeleted = " (deleted)";
  if (path.ends_with(kDeleted)) path.resize(path.size() - kDeleted.size());
  return path;
}

/// The path of a call relative to a folder descriptor; empty when no fault is armed.
std::string PathAt(int folder, const char* path) {
  if (!FaultsOfProcess().IsArmed() || path == nullptr) return {};
  if (path[0] == '/' || folder == AT_FDCWD) return path;
  return path[0] == '\0' ? PathOf(folder) : PathOf(folder) + "/" + path;
}

/// Passes a call on, or fails it.
///
/// \param needs_room whether the call fails on a full disk
/// \param failed     the result of a failed call
template <typename Result, typename Real>
Result Try(SystemCall call, const std::string& path, bool needs_room, Result failed,
           const Real& real) {
  const int before = errno;
  const Verdict verdict = FaultsOfProcess().Judge(call, path, needs_room);
  if (verdict.error != 0) {
    errno = verdict.error;
    return failed;
  }
  errno = before;
  return real();
}

/// Passes a read or write on, with all or half of its bytes, or fails it.
template <typename Real>
ssize_t TryTransfer(SystemCall call, int descriptor, std::size_t bytes, const Real& real) {
  const int before = errno;
  const Verdict verdict =
      FaultsOfProcess().Judge(call, PathOf(descriptor), call == SystemCall::kWrite);
  if (verdict.error != 0) {
    errno = verdict.error;
    return -1;
  }
  errno = before;
  if (!verdict.shorten) return real(bytes);
  const ssize_t done = real(std::max<std::size_t>(bytes / 2, std::min<std::size_t>(bytes, 1)));
  if (verdict.kill) Kill();
  return done;
}

/// The mode argument of an open call, which exists only if the call may create a file.
mode_t ModeOf(int flags, va_list& arguments) {
  return (flags & (O_CREAT | __O_TMPFILE)) != 0 ? va_arg(arguments, mode_t) : 0;
}

bool MakesFile(int flags) noexcept { return (flags & O_CREAT) != 0; }

}  // namespace
}  // namespace tallow

using tallow::FaultsOfProcess;
using tallow::Next;
using tallow::PathAt;
using tallow::PathOf;
using tallow::SystemCall;
using tallow::Try;
using tallow::TryTransfer;

extern "C" {

void TallowFailCall(const char* root, const tallow::Fault& fault) {
  FaultsOfProcess().Arm(root, &fault, -1);
}
void TallowRecordCalls(const char* root, int descriptor) {
  FaultsOfProcess().Arm(root, nullptr, descriptor);
}
bool TallowEndFaults() { return FaultsOfProcess().Disarm(); }

using OpenFunction = int (*)(const char*, int, ...);
using OpenAtFunction = int (*)(int, const char*, int, ...);

int open(const char* path, int flags, ...) {
  static const auto real = Next<OpenFunction>("open");
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = tallow::ModeOf(flags, arguments);
  va_end(arguments);
  return Try(SystemCall::kOpen, PathAt(AT_FDCWD, path), tallow::MakesFile(flags), -1,
             [&] { return real(path, flags, mode); });
}
int open64(const char* path, int flags, ...) {
  static const auto real = Next<OpenFunction>("open64");
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = tallow::ModeOf(flags, arguments);
  va_end(arguments);
  return Try(SystemCall::kOpen, PathAt(AT_FDCWD, path), tallow::MakesFile(flags), -1,
             [&] { return real(path, flags, mode); });
}
int openat(int folder, const char* path, int flags, ...) {
  static const auto real = Next<OpenAtFunction>("openat");
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = tallow::ModeOf(flags, arguments);
  va_end(arguments);
  return Try(SystemCall::kOpen, PathAt(folder, path), tallow::MakesFile(flags), -1,
             [&] { return real(folder, path, flags, mode); });
}
int openat64(int folder, const char* path, int flags, ...) {
  static const auto real = Next<OpenAtFunction>("openat64");
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = tallow::ModeOf(flags, arguments);
  va_end(arguments);
  return Try(SystemCall::kOpen, PathAt(folder, path), tallow::MakesFile(flags), -1,
             [&] { return real(folder, path, flags, mode); });
}

ssize_t read(int descriptor, void* buffer, size_t bytes) {
  static const auto real = Next<ssize_t (*)(int, void*, size_t)>("read");
  return TryTransfer(SystemCall::kRead, descriptor, bytes,
                     [&](size_t most) { return real(descriptor, buffer, most); });
}
ssize_t pread(int descriptor, void* buffer, size_t bytes, off_t at) {
  static const auto real = Next<ssize_t (*)(int, void*, size_t, off_t)>("pread");
  return TryTransfer(SystemCall::kRead, descriptor, bytes,
                     [&](size_t most) { return real(descriptor, buffer, most, at); });
}
ssize_t pread64(int descriptor, void* buffer, size_t bytes, off64_t at) {
  static const auto real = Next<ssize_t (*)(int, void*, size_t, off64_t)>("pread64");
  return TryTransfer(SystemCall::kRead, descriptor, bytes,
                     [&](size_t most) { return real(descriptor, buffer, most, at); });
}
ssize_t write(int descriptor, const void* buffer, size_t bytes) {
  static const auto real = Next<ssize_t (*)(int, const void*, size_t)>("write");
  return TryTransfer(SystemCall::kWrite, descriptor, bytes,
                     [&](size_t most) { return real(descriptor, buffer, most); });
}
ssize_t pwrite(int descriptor, const void* buffer, size_t bytes, off_t at) {
  static const auto real = Next<ssize_t (*)(int, const void*, size_t, off_t)>("pwrite");
  return TryTransfer(SystemCall::kWrite, descriptor, bytes,
                     [&](size_t most) { return real(descriptor, buffer, most, at); });
}
ssize_t pwrite64(int descriptor, const void* buffer, size_t bytes, off64_t at) {
  static const auto real = Next<ssize_t (*)(int, const void*, size_t, off64_t)>("pwrite64");
  return TryTransfer(SystemCall::kWrite, descriptor, bytes,
                     [&](size_t most) { return real(descriptor, buffer, most, at); });
}

int stat(const char* path, struct stat* status) noexcept {
  static const auto real = Next<int (*)(const char*, struct stat*)>("stat");
  return Try(SystemCall::kStat, PathAt(AT_FDCWD, path), false, -1,
             [&] { return real(path, status); });
}
int stat64(const char* path, struct stat64* status) noexcept {
  static const auto real = Next<int (*)(const char*, struct stat64*)>("stat64");
  return Try(SystemCall::kStat, PathAt(AT_FDCWD, path), false, -1,
             [&] { return real(path, status); });
}
int lstat(const char* path, struct stat* status) noexcept {
  static const auto real = Next<int (*)(const char*, struct stat*)>("lstat");
  return Try(SystemCall::kStat, PathAt(AT_FDCWD, path), false, -1,
             [&] { return real(path, status); });
}
int lstat64(const char* path, struct stat64* status) noexcept {
  static const auto real = Next<int (*)(const char*, struct stat64*)>("lstat64");
  return Try(SystemCall::kStat, PathAt(AT_FDCWD, path), false, -1,
             [&] { return real(path, status); });
}
int fstat(int descriptor, struct stat* status) noexcept {
  static const auto real = Next<int (*)(int, struct stat*)>("fstat");
  return Try(SystemCall::kStat, PathOf(descriptor), false, -1,
             [&] { return real(descriptor, status); });
}
int fstat64(int descriptor, struct stat64* status) noexcept {
  static const auto real = Next<int (*)(int, struct stat64*)>("fstat64");
  return Try(SystemCall::kStat, PathOf(descriptor), false, -1,
             [&] { return real(descriptor, status); });
}
int fstatat(int folder, const char* path, struct stat* status, int flags) noexcept {
  static const auto real = Next<int (*)(int, const char*, struct stat*, int)>("fstatat");
  return Try(SystemCall::kStat, PathAt(folder, path), false, -1,
             [&] { return real(folder, path, status, flags); });
}
int fstatat64(int folder, const char* path, struct stat64* status, int flags) noexcept {
  static const auto real = Next<int (*)(int, const char*, struct stat64*, int)>("fstatat64");
  return Try(SystemCall::kStat, PathAt(folder, path), false, -1,
             [&] { return real(folder, path, status, flags); });
}
int statx(int folder, const char* path, int flags, unsigned int mask,
          struct statx* status) noexcept {
  static const auto real =
      Next<int (*)(int, const char*, int, unsigned int, struct statx*)>("statx");
  return Try(SystemCall::kStat, PathAt(folder, path), false, -1,
             [&] { return real(folder, path, flags, mask, status); });
}

int fsync(int descriptor) {
  static const auto real = Next<int (*)(int)>("fsync");
  // Loss of power is not tested, and flushing would take most of the test's time.
  const std::string path = PathOf(descriptor);
  return Try(SystemCall::kSync, path, true, -1,
             [&] { return FaultsOfProcess().Counts(path) ? 0 : real(descriptor); });
}
int fdatasync(int descriptor) {
  static const auto real = Next<int (*)(int)>("fdatasync");
  const std::string path = PathOf(descriptor);
  return Try(SystemCall::kSync, path, true, -1,
             [&] { return FaultsOfProcess().Counts(path) ? 0 : real(descriptor); });
}

int rename(const char* from, const char* to) noexcept {
  static const auto real = Next<int (*)(const char*, const char*)>("rename");
  return Try(SystemCall::kRename, PathAt(AT_FDCWD, from), true, -1, [&] { return real(from, to); });
}
int renameat(int from_folder, const char* from, int to_folder, const char* to) noexcept {
  static const auto real = Next<int (*)(int, const char*, int, const char*)>("renameat");
  return Try(SystemCall::kRename, PathAt(from_folder, from), true, -1,
             [&] { return real(from_folder, from, to_folder, to); });
}
int mkdir(const char* path, mode_t mode) noexcept {
  static const auto real = Next<int (*)(const char*, mode_t)>("mkdir");
  return Try(SystemCall::kMakeFolder, PathAt(AT_FDCWD, path), true, -1,
             [&] { return real(path, mode); });
}
int mkdirat(int folder, const char* path, mode_t mode) noexcept {
  static const auto real = Next<int (*)(int, const char*, mode_t)>("mkdirat");
  return Try(SystemCall::kMakeFolder, PathAt(folder, path), true, -1,
             [&] { return real(folder, path, mode); });
}
int unlink(const char* path) noexcept {
  static const auto real = Next<int (*)(const char*)>("unlink");
  return Try(SystemCall::kUnlink, PathAt(AT_FDCWD, path), false, -1, [&] { return real(path); });
}
int unlinkat(int folder, const char* path, int flags) noexcept {
  static const auto real = Next<int (*)(int, const char*, int)>("unlinkat");
  return Try(SystemCall::kUnlink, PathAt(folder, path), false, -1,
             [&] { return real(folder, path, flags); });
}
int close(int descriptor) {
  static const auto real = Next<int (*)(int)>("close");
  const std::string path = PathOf(descriptor);
  // Like the system, closes the descriptor even when the call fails.
  bool closed = false;
  const auto close_it = [&] {
    closed = true;
    return real(descriptor);
  };
  const int result = Try(SystemCall::kClose, path, false, -1, close_it);
  if (!closed) {
    const int error = errno;
    real(descriptor);
    errno = error;
  }
  return result;
}
int ftruncate(int descriptor, off_t bytes) noexcept {
  static const auto real = Next<int (*)(int, off_t)>("ftruncate");
  return Try(SystemCall::kTruncate, PathOf(descriptor), false, -1,
             [&] { return real(descriptor, bytes); });
}
int ftruncate64(int descriptor, off64_t bytes) noexcept {
  static const auto real = Next<int (*)(int, off64_t)>("ftruncate64");
  return Try(SystemCall::kTruncate, PathOf(descriptor), false, -1,
             [&] { return real(descriptor, bytes); });
}
int link(const char* from, const char* to) noexcept {
  static const auto real = Next<int (*)(const char*, const char*)>("link");
  return Try(SystemCall::kLink, PathAt(AT_FDCWD, from), true, -1, [&] { return real(from, to); });
}
int symlink(const char* target, const char* path) noexcept {
  static const auto real = Next<int (*)(const char*, const char*)>("symlink");
  return Try(SystemCall::kLink, PathAt(AT_FDCWD, path), true, -1,
             [&] { return real(target, path); });
}

DIR* opendir(const char* path) {
  static const auto real = Next<DIR* (*)(const char*)>("opendir");
  return Try(SystemCall::kOpenList, PathAt(AT_FDCWD, path), false, static_cast<DIR*>(nullptr),
             [&] { return real(path); });
}
struct dirent* readdir(DIR* folder) {
  static const auto real = Next<struct dirent* (*)(DIR*)>("readdir");
  return Try(SystemCall::kReadList, PathOf(dirfd(folder)), false,
             static_cast<struct dirent*>(nullptr), [&] { return real(folder); });
}
struct dirent64* readdir64(DIR* folder) {
  static const auto real = Next<struct dirent64* (*)(DIR*)>("readdir64");
  return Try(SystemCall::kReadList, PathOf(dirfd(folder)), false,
             static_cast<struct dirent64*>(nullptr), [&] { return real(folder); });
}

int access(const char* path, int mode) noexcept {
  static const auto real = Next<int (*)(const char*, int)>("access");
  return Try(SystemCall::kAccess, PathAt(AT_FDCWD, path), false, -1,
             [&] { return real(path, mode); });
}
int faccessat(int folder, const char* path, int mode, int flags) noexcept {
  static const auto real = Next<int (*)(int, const char*, int, int)>("faccessat");
  return Try(SystemCall::kAccess, PathAt(folder, path), false, -1,
             [&] { return real(folder, path, mode, flags); });
}
int chmod(const char* path, mode_t mode) noexcept {
  static const auto real = Next<int (*)(const char*, mode_t)>("chmod");
  return Try(SystemCall::kMode, PathAt(AT_FDCWD, path), false, -1,
             [&] { return real(path, mode); });
}
int fchmod(int descriptor, mode_t mode) noexcept {
  static const auto real = Next<int (*)(int, mode_t)>("fchmod");
  return Try(SystemCall::kMode, PathOf(descriptor), false, -1,
             [&] { return real(descriptor, mode); });
}
ssize_t readlink(const char* path, char* buffer, size_t bytes) noexcept {
  static const auto real = Next<ssize_t (*)(const char*, char*, size_t)>("readlink");
  return Try(SystemCall::kReadLink, PathAt(AT_FDCWD, path), false, static_cast<ssize_t>(-1),
             [&] { return real(path, buffer, bytes); });
}
char* realpath(const char* path, char* resolved) noexcept {
  static const auto real = Next<char* (*)(const char*, char*)>("realpath");
  return Try(SystemCall::kResolve, PathAt(AT_FDCWD, path), false, static_cast<char*>(nullptr),
             [&] { return real(path, resolved); });
}
}  // extern "C"
